// uxtree view: a page to look at a file with.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "uxtree/host/embedded.h"

#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/platform.h"
#include "support/spectrum_plot.h"

namespace uxtool {

extern const std::string_view kViewPage;  // pages/view.html

namespace {

struct ViewOptions {
    std::vector<std::string> files;
    std::string output;
    bool noOpen = false;
};

// Appends a quoted text. The reader has seen that it is UTF-8.
void append_string(std::string& out, std::string_view text) {
    const bool plain = std::none_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '"' || c == '\\' || c == '<';
    });
    if (!plain) {
        out += script_string(text);
        return;
    }
    out += '"';
    out += text;
    out += '"';
}

// A document as the page wants it: flat lists with an entry for each node in document order. A text
// between elements is a node of its own; white space that stands alone between them is none.
class ViewData : public UXXmlEvents {
public:
    void Restart() override { *this = ViewData(); }
    void Start(std::string_view name, const UXXmlAttribute* attributes,
               std::size_t count) override {
        take_text_between();
        add_node(number_of(name));
        std::string list;
        list += count == 0 ? '0' : '[';
        for (std::size_t i = 0; i < count; ++i) {
            if (i > 0) list += ',';
            fmt::format_to(std::back_inserter(list), "{},", number_of(attributes[i].name));
            append_string(list, attributes[i].value);
        }
        if (count > 0) list += ']';
        append(attributes_, list);
        open_.push_back({tags_.size() - 1, false});
    }
    void Text(std::string_view text) override { text_ += text; }
    void End() override {
        const Open open = open_.back();
        if (open.hasNodes) {
            take_text_between();
        } else {
            texts_[open.node] = std::exchange(text_, {});
        }
        sizes_[open.node] = tags_.size() - open.node - 1;
        open_.pop_back();
        text_.clear();
    }
    void write(Output& out, const std::string& name) const;
    const std::string& root() const { return names_.front(); }

private:
    struct Open {
        std::size_t node;
        bool hasNodes;
    };

    long long number_of(std::string_view name) {
        const auto [place, isNew] = numbers_.emplace(name, static_cast<long long>(names_.size()));
        if (isNew) names_.emplace_back(name);
        return place->second;
    }
    void add_node(long long tag) {
        if (!open_.empty()) open_.back().hasNodes = true;
        tags_.push_back(tag);
        sizes_.push_back(0);
        texts_.emplace_back();
    }
    void take_text_between() {
        const std::string text = std::exchange(text_, {});
        if (text.find_first_not_of(" \t\r\n") == std::string::npos) return;
        add_node(-1);
        texts_.back() = text;
        append(attributes_, "0");
    }
    static void append(std::string& list, std::string_view entry) {
        if (!list.empty()) list += ',';
        list += entry;
    }

    std::unordered_map<std::string, long long> numbers_;
    std::vector<std::string> names_;
    std::vector<long long> tags_;  // -1 for a text
    std::vector<std::size_t> sizes_;
    std::string attributes_;  // as JSON
    std::vector<std::string> texts_;
    std::vector<Open> open_;
    std::string text_;  // of the innermost element, since its last node
};

template <typename List>
void write_list(Output& out, std::string_view name, const List& list) {
    out.print(",\n\"{}\":[", name);
    for (std::size_t i = 0; i < list.size(); ++i) out.print("{}{}", i == 0 ? "" : ",", list[i]);
    out.write("]");
}

void write_texts(Output& out, std::string_view name, const std::vector<std::string>& list,
                 std::string_view empty) {
    out.print(",\n\"{}\":[", name);
    std::string text;
    for (std::size_t i = 0; i < list.size(); ++i) {
        text.clear();
        if (i > 0) text += ',';
        if (list[i].empty()) {
            text += empty;
        } else {
            append_string(text, list[i]);
        }
        out.write(text);
    }
    out.write("]");
}

void ViewData::write(Output& out, const std::string& name) const {
    out.print("{{\"name\":{}", script_string(name));
    write_texts(out, "names", names_, "\"\"");
    write_list(out, "tags", tags_);
    write_list(out, "sizes", sizes_);
    out.print(",\n\"attrs\":[{}]", attributes_);
    write_texts(out, "texts", texts_, "0");
    out.write("}");
}

struct Viewed {
    std::string name;
    std::unique_ptr<ViewData> data = std::make_unique<ViewData>();
    std::vector<uxkit::Spectrum> spectra;
};

bool is_spectrum_file(const ViewData& data) {
    std::string_view root = data.root();
    root.remove_prefix(root.rfind(':') + 1);
    return root == "RadInstrumentData" || root == "N42InstrumentData";
}

Viewed read_file(const std::string& file) {
    Viewed out;
    out.name = std::filesystem::path(input_name(file)).filename().string();
    const SpectrumInput input(file);
    if (UXReadXml(input.input.path().c_str(), out.data.get()) == 0) {
        throw_refused_file(input.name, input.input.path());
    }
    if (is_spectrum_file(*out.data)) {
        uxkit::SpectrumReader reader = open_spectra(input);
        out.spectra = all_spectra(reader, input);
        const std::vector<std::string> notes = notes_of(reader, input);
        if (out.spectra.empty()) {
            tell_nothing(input.name, "spectra", notes);
        } else {
            tell(notes);
        }
    }
    return out;
}

// The page has places for its title, the documents, the charts of those that have spectra, and the
// page that a chart is.
void write_page(Output& out, const std::vector<Viewed>& files) {
    std::string title;
    for (const Viewed& file : files) title += (title.empty() ? "" : ", ") + file.name;
    std::string_view rest = kViewPage;
    const auto write_until = [&](std::string_view mark) {
        const std::size_t end = rest.find(mark);
        out.write(rest.substr(0, end));
        rest.remove_prefix(end + mark.size());
    };
    write_until("{{title}}");
    out.write(markup(title));
    write_until("{{data}}");
    std::string_view separator = "[";
    for (const Viewed& file : files) {
        out.write(separator);
        file.data->write(out, file.name);
        separator = ",\n";
    }
    out.write("]");
    write_until("{{charts}}");
    separator = "[";
    for (const Viewed& file : files) {
        out.write(separator);
        if (file.spectra.empty()) {
            out.write("0");
        } else {
            PlotChoice choice;
            choice.file = choice.title = file.name;
            write_plot_data(out, plot_of(choice, file.spectra, true));
        }
        separator = ",\n";
    }
    out.write("]");
    write_until("{{plotPage}}");
    const bool anyChart = std::any_of(files.begin(), files.end(),
                                      [](const Viewed& file) { return !file.spectra.empty(); });
    out.write(anyChart ? script_string(kPlotPage) : "\"\"");
    out.write(rest);
}

// A file that nobody else can write to, in a new folder among the temporary ones.
std::string temporary_page(const std::string& name) {
    std::string folder = (std::filesystem::temp_directory_path() / "uxtree-view-").string();
    if (!create_folder_that_begins(folder)) {
        throw Failure(kRefused, folder, "no folder can be made there", "-o FILE writes elsewhere");
    }
    return (std::filesystem::path(folder) / (name + ".html")).string();
}

int run_view(const ViewOptions& options) {
    std::vector<Viewed> files;
    for (const std::string& file : options.files) files.push_back(read_file(file));
    const bool isTemporary = options.output.empty();
    const std::string page = isTemporary ? temporary_page(files.front().name) : options.output;
    Output out(page);
    write_page(out, files);
    const int code = out.finish();
    if (page == "-") return code;
    if (isTemporary) {
        Output name("");
        name.print("{}\n", page);
        name.finish();
    }
    if (!options.noOpen && has_desktop() && !open_on_desktop(page)) {
        note(std::string(kOpener) + " cannot be run; open " + page + " in a browser");
    }
    return code;
}

const Command kView{
    "view", "Write a page to look at files with, and open it",
    "uxtree view catalog.xml                    # opens it on a desktop, and prints its name\n"
    "uxtree view catalog.xml -o page.html --no-open\n"
    "uxtree view old.xml new.xml                # what is different is marked\n"
    "uxtree view spectrum.n42                   # with its spectra as curves\n"
    "# a page needs nothing but itself; it holds all of the files",
    [](CLI::App& app) {
        auto options = std::make_shared<ViewOptions>();
        add_files(app, options->files);
        app.add_flag("--no-open", options->noOpen, "Only write the page");
        app.add_option("-o,--output", options->output,
                       "Write the page to FILE instead of a temporary one")
            ->type_name("FILE");
        return [options] { return run_view(*options); };
    }};

}  // namespace
}  // namespace uxtool
