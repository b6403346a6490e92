// uxtree view: a page to look at a file with.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/host/embedded.h"

#include "support/command.h"
#include "support/input.h"
#include "support/json.h"
#include "support/output.h"
#include "support/platform.h"
#include "support/spectrum_plot.h"
#include "view_changes.h"
#include "view_data.h"

namespace uxtool {

extern const std::string_view kViewPage;  // pages/view.html

namespace {

struct ViewOptions {
    std::vector<std::string> files;
    std::string output;
    bool noOpen = false;
};

struct Viewed {
    std::string name;
    std::unique_ptr<ViewData> data = std::make_unique<ViewData>();
    std::vector<uxkit::Spectrum> spectra;
};

bool is_spectrum_file(const ViewData& data) {
    std::string_view root = data.tag(0);
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
        if (out.spectra.empty()) note(input.name + " has no spectra");
        tell(notes_of(reader, input));
    }
    return out;
}

// A list with an entry for each file.
template <typename WriteEntry>
void write_entries(Output& out, const std::vector<Viewed>& files, WriteEntry&& writeEntry) {
    std::string_view separator = "[";
    for (const Viewed& file : files) {
        out.write(separator);
        writeEntry(file);
        separator = ",\n";
    }
    out.write("]");
}

void write_chart(Output& out, const Viewed& file) {
    if (file.spectra.empty()) return out.write("0");
    PlotChoice choice;
    choice.file = choice.title = file.name;
    write_plot_data(out, plot_of(choice, file.spectra, true));
}

// The page has places for its title, the documents, what is different in two, the charts of those
// that have spectra, and the page that a chart is.
void write_page(Output& out, const std::vector<Viewed>& files) {
    std::string title;
    for (const Viewed& file : files) title += (title.empty() ? "" : ", ") + file.name;
    std::string_view rest = kViewPage;
    const auto writeUntil = [&](std::string_view mark) {
        const std::size_t end = rest.find(mark);
        out.write(rest.substr(0, end));
        rest.remove_prefix(end + mark.size());
    };
    writeUntil("{{title}}");
    out.write(markup(title));
    writeUntil("{{data}}");
    write_entries(out, files, [&](const Viewed& file) { file.data->write(out, file.name); });
    writeUntil("{{changes}}");
    if (files.size() == 2) {
        write_view_changes(out, *files[0].data, *files[1].data);
    } else {
        out.write("0");
    }
    writeUntil("{{charts}}");
    write_entries(out, files, [&](const Viewed& file) { write_chart(out, file); });
    writeUntil("{{plotPage}}");
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
    runs<run_view>([](CLI::App& app, ViewOptions& options) {
        add_files(app, options.files);
        app.add_flag("--no-open", options.noOpen, "Only write the page");
        app.add_option("-o,--output", options.output,
                       "Write the page to FILE instead of a temporary one")
            ->type_name("FILE");
    })};

}  // namespace
}  // namespace uxtool
