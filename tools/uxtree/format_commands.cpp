// uxtree format, check: what every XML file is asked for.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <exception>
#include <optional>

#include "uxtree/host/embedded.h"

#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/replace_files.h"
#include "support/table.h"
#include "support/text.h"
#include "support/tree.h"
#include "support/work_ahead.h"

namespace uxtool {
namespace {

// ---- format -----------------------------------------------------------------------------------

struct FormatOptions {
    std::vector<std::string> files;
    std::string output;
    std::string indent = "2";
    bool compact = false;
    InPlace inPlace;
    unsigned jobs = 1;
    std::uint64_t maxSpool = NamedInput::kMaxSpool;
};

struct Formatted {
    std::string file;
    std::string before;
    CStringUTF8 after;
};

constexpr int kMostBlanks = 16;

// "" when the text is neither "tab" nor a number of blanks.
std::optional<std::string> indent_of(const std::string& text) {
    if (text == "tab") return "\t";
    int blanks = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), blanks);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || blanks < 0 || blanks > kMostBlanks) return std::nullopt;
    return std::string(static_cast<std::size_t>(blanks), ' ');
}

Formatted formatted(const std::string& file, const UXFormatOptions& style) {
    Formatted result{file, read_all(file), {}};
    if (UXFormatXml(result.before.data(), result.before.size(), style, &result.after) == 0) {
        throw_refused_text(input_name(file), result.before);
    }
    return result;
}

ExitCode write_formatted(const Formatted& result, const FormatOptions& options) {
    const std::string_view after(result.after, static_cast<std::size_t>(result.after.GetLength()));
    if (options.inPlace.dryRun) {
        print_text_difference(result.before, after, input_name(result.file));
    } else if (after != result.before) {
        ReplacedFiles files(options.inPlace.backupSuffix);
        files.add(result.file, after);
        files.commit();
    }
    return kSuccess;
}

// What the host writes goes to the output; what the output throws waits until the host is done.
class OutputSink : public UXByteSink {
public:
    explicit OutputSink(Output& out) : out_(out) {}
    bool Write(std::string_view bytes) override {
        try {
            out_.write(bytes);
            return true;
        } catch (...) {
            failure_ = std::current_exception();
            return false;
        }
    }
    void throw_failure() const {
        if (failure_) std::rethrow_exception(failure_);
    }

private:
    Output& out_;
    std::exception_ptr failure_;
};

// Piece by piece: nothing is compared.
int format_to_output(const FormatOptions& options, const UXFormatOptions& style) {
    const std::string& file = options.files.front();
    const NamedInput input(file, options.maxSpool);
    const Progress progress("formatting " + input_name(file));
    Output out(options.output);
    OutputSink sink(out);
    if (UXFormatXmlFile(input.path().c_str(), style, &sink) == 0) {
        sink.throw_failure();
        throw_refused_file(input_name(file), input.path());
    }
    return out.finish();
}

int run_format(const FormatOptions& options) {
    const bool toOutput = !options.inPlace.chosen && !options.inPlace.dryRun;
    if (toOutput && options.files.size() > 1) {
        throw Failure(kUsage, "uxtree", "several files are formatted in place",
                      "-i writes them, -n prints what would change");
    }
    const bool hasInput =
        std::find(options.files.begin(), options.files.end(), "-") != options.files.end();
    if (options.inPlace.chosen && hasInput) throw_not_in_place();
    const std::string indent = indent_of(options.indent).value_or("");
    const UXFormatOptions style{indent.c_str(), options.compact};
    if (toOutput) return format_to_output(options, style);
    return for_each_in_order(
        options.files, options.jobs,
        [&](const std::string& file) { return formatted(file, style); },
        [&](const Formatted& result) { return write_formatted(result, options); });
}

const Command kFormat{
    "format", "Lay out XML files anew, keeping comments and values",
    "uxtree format messy.xml\n"
    "uxtree format messy.xml --indent tab -o neat.xml\n"
    "uxtree format *.xml -i              # in place; what is neat is not written\n"
    "uxtree format --compact big.xml     # no lines at all",
    runs<run_format>([](CLI::App& app, FormatOptions& options) {
        add_files(app, options.files);
        CLI::Option* compact =
            app.add_flag("--compact", options.compact, "No white space between elements");
        app.add_option("--indent", options.indent, "Blanks a level, 0 to 16, or tab (2)")
            ->type_name("N|tab")
            ->excludes(compact)
            ->check([](const std::string& text) {
                return indent_of(text) ? std::string() : "a number up to 16, or tab";
            });
        options.inPlace.add_options(app, add_output(app, options.output));
        add_jobs(app, options.jobs);
        add_max_spool(app, options.maxSpool);
    })};

// ---- check ------------------------------------------------------------------------------------

struct CheckOptions {
    std::vector<std::string> files;
    std::string format = "text";
    std::string output;
    bool quiet = false;
    unsigned jobs = 1;
    std::uint64_t maxSpool = NamedInput::kMaxSpool;
};

class Silent : public UXXmlEvents {
public:
    void Restart() override {}
    void Start(std::string_view /*name*/, const UXXmlAttribute* /*attributes*/,
               std::size_t /*count*/) override {}
    void End() override {}
};

struct Checked {
    std::string name;
    UXFileError error;  // no message when the file is well-formed
    std::optional<Failure> failure;
};

Checked check(const std::string& file, std::uint64_t maxSpool) {
    Checked result{input_name(file), {}, std::nullopt};
    try {
        const NamedInput input(file, maxSpool);
        const Progress progress("checking " + result.name);
        Silent nobody;
        if (UXReadXml(input.path().c_str(), &nobody) != 0) return result;
        result.error = UXGetLastLoadFailure();
        throw_refused_file(result.name, input.path());
    } catch (const Failure& failure) {
        result.failure = failure;
    }
    return result;
}

int run_check(const CheckOptions& options) {
    Output out(options.output);
    Table table({"file", "line", "column", "error"});
    const auto take = [&](const Checked& result) {
        const UXFileError& error = result.error;
        const bool isPlaced = error.line > 0;
        if (!result.failure) {
            table.add({result.name});
            if (options.format == "text" && !options.quiet) {
                out.write(visible(result.name) + ": well-formed\n");
            }
            return kSuccess;
        }
        table.add({result.name, isPlaced ? Cell(error.line) : Cell(),
                   isPlaced ? Cell(error.column) : Cell(), Cell(result.failure->what())});
        throw Failure(*result.failure);
    };
    const int code = for_each_in_order(
        options.files, options.jobs,
        [&](const std::string& file) { return check(file, options.maxSpool); }, take);
    if (options.format != "text") write_table(out, table, options.format);
    return out.finish(code);
}

const Command kCheck{
    "check", "Say whether XML files are well-formed, or where not",
    "uxtree check a.xml b.xml\n"
    "uxtree check -q *.xml        # says nothing of files that are\n"
    "uxtree check -f json *.xml   # one object per file; error is null when it is well-formed",
    runs<run_check>([](CLI::App& app, CheckOptions& options) {
        add_files(app, options.files);
        add_format(app, options.format, table_formats());
        app.add_flag("-q,--quiet", options.quiet, "Print nothing about well-formed files");
        add_jobs(app, options.jobs);
        add_max_spool(app, options.maxSpool);
        add_output(app, options.output);
    })};

}  // namespace
}  // namespace uxtool
