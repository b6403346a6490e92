// script/sources: the sources of a script, with the files that they include, on their way to the
// compiler.
#include "sources.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include <angelscript/scriptbuilder.h>

#include "messages.h"

namespace uxscript {

namespace {

constexpr std::size_t kMostBytes = std::size_t{4} << 20;  // of all sources of a module
// Bytes of the machine stack that the compiler takes for each level, more or less.
constexpr std::size_t kBracket = 2800;
constexpr std::size_t kValue = 1400;  // an assignment or a choice
constexpr std::size_t kStatement = 700;
constexpr std::size_t kDeepest = 200 * kBracket;  // what a megabyte has room for without doubt
constexpr std::size_t kDeepestFunction = 50;  // those without a name are named by all around them
constexpr std::size_t kDeepestType = 12;      // each level doubles the time
constexpr int kDeepestInclude = 50;
constexpr std::size_t kLongestName = 100;
constexpr std::size_t kLongestPath = 250;  // of names with :: between them
constexpr std::size_t kLongestList = 850;  // types of a list, as messages write them

template <std::size_t kSize>
bool is_one_of(std::string_view token, const std::array<std::string_view, kSize>& words) {
    return std::find(words.begin(), words.end(), token) != words.end();
}

bool assigns(std::string_view token) {
    static constexpr std::array<std::string_view, 4> kCompare{"==", "!=", "<=", ">="};
    return token.back() == '=' && !is_one_of(token, kCompare);
}
bool begins_statement(std::string_view token) {
    static constexpr std::array<std::string_view, 7> kWords{"if",     "else", "while", "for",
                                                            "switch", "do",   "try"};
    return is_one_of(token, kWords);
}
bool names_type(std::string_view token) {
    static constexpr std::array<std::string_view, 5> kWords{"class", "interface", "enum", "typedef",
                                                            "funcdef"};
    return is_one_of(token, kWords);
}
// Can the token stand within a type, as in "const array<a::b@>[]"?
bool within_type(std::string_view token, as::asETokenClass kind) {
    static constexpr std::array<std::string_view, 9> kSigns{"<", ">",  ">>", ">>>", "[",
                                                            "]", "::", "@",  ","};
    return kind == as::asTC_IDENTIFIER || is_one_of(token, kSigns) ||
           (kind == as::asTC_KEYWORD && token.front() >= 'a' && token.front() <= 'z');
}

// One pass over the tokens of a source.
class Scan {
public:
    explicit Scan(SourceCheck::Longest& longest) : longest_(longest) {}
    // Why the token goes too far; null when it does not.
    const char* take(std::string_view token, as::asETokenClass kind);

private:
    // What is open between two brackets.
    struct Level {
        char bracket = '\0';
        bool isFunction = false;
        bool ended = false;          // a statement, unless an else goes on with it
        std::size_t statements = 0;  // bytes of those that stand within each other
        std::size_t values = 0;      // the same
        std::size_t listed = 1;      // between commas
    };

    void open(char bracket);
    void close();
    std::size_t longest_list() const;
    void measure_nesting(std::string_view token);
    void measure_types(std::string_view token, as::asETokenClass kind);
    void measure_names(std::string_view token, as::asETokenClass kind);

    SourceCheck::Longest& longest_;
    std::vector<Level> levels_ = std::vector<Level>(1);
    std::size_t inner_ = 0;  // bytes of statements and values of all levels
    std::size_t functions_ = 0;
    std::size_t types_ = 0;  // inside each other
    std::size_t path_ = 0;   // bytes of names with :: between them
    bool functionNext_ = false;
    bool typeNext_ = false;
    bool namespaceNext_ = false;
    std::string_view last_;
};

void Scan::open(char bracket) {
    const bool isFunction = bracket == '{' && std::exchange(functionNext_, false);
    if (isFunction) ++functions_;
    levels_.push_back({bracket, isFunction});
}

void Scan::close() {
    const Level level = levels_.back();
    inner_ -= level.statements + level.values;
    if (level.isFunction) --functions_;
    levels_.pop_back();
    if (levels_.empty()) levels_.emplace_back();
}

void Scan::measure_nesting(std::string_view token) {
    const auto forget = [this](std::size_t& count) { inner_ -= std::exchange(count, 0); };
    if (std::exchange(levels_.back().ended, false) && token != "else") {
        forget(levels_.back().statements);
    }
    if (token == "function") functionNext_ = true;
    if (token == "(" || token == "[" || token == "{") {
        open(token.front());
    } else if (token == ")" || token == "]" || token == "}") {
        close();
        levels_.back().ended = token == "}";
    } else if (token == ";" || token == ",") {
        Level& level = levels_.back();
        forget(level.values);
        level.ended = token == ";";
        if (level.bracket == '(' && token == ",") {
            longest_.list = std::max(longest_.list, ++level.listed);
        }
    } else if (begins_statement(token) && !(token == "if" && last_ == "else")) {
        levels_.back().statements += kStatement;
        inner_ += kStatement;
    } else if (token == "?" || assigns(token)) {
        levels_.back().values += kValue;
        inner_ += kValue;
    }
}

void Scan::measure_types(std::string_view token, as::asETokenClass kind) {
    if (!within_type(token, kind)) {
        types_ = 0;
    } else if (token == "<" || (token == "]" && last_ == "[")) {
        longest_.nesting = std::max(longest_.nesting, ++types_);
    } else if (token.front() == '>') {
        types_ -= std::min(types_, token.size());
    }
}

void Scan::measure_names(std::string_view token, as::asETokenClass kind) {
    if (kind == as::asTC_IDENTIFIER) {
        path_ = (last_ == "::" ? path_ : 0) + token.size();
        if (typeNext_) longest_.type = std::max(longest_.type, token.size());
        if (namespaceNext_) longest_.namespaces += token.size();
    } else if (token == "::") {
        path_ += token.size();
    } else if (token == "{" || token == ";" || token == "(" || token == ":") {
        typeNext_ = namespaceNext_ = false;
    }
    if (names_type(token)) typeNext_ = true;
    if (token == "namespace") namespaceNext_ = true;
}

// As a message writes it: "const array<a::Name@>@&inout, " and so on.
std::size_t Scan::longest_list() const {
    constexpr std::size_t kOurLongestType = 25;
    const std::size_t name = std::max(longest_.type + longest_.namespaces, kOurLongestType);
    return longest_.list * (15 + 8 * longest_.nesting + name);
}

const char* Scan::take(std::string_view token, as::asETokenClass kind) {
    measure_nesting(token);
    measure_types(token, kind);
    measure_names(token, kind);
    last_ = token;
    if ((levels_.size() - 1) * kBracket + inner_ > kDeepest) {
        return "more than 200 brackets, 400 assignments or 800 statements inside each other";
    }
    if (functions_ > kDeepestFunction) return "more than 50 functions inside each other";
    if (types_ > kDeepestType) return "more than 12 types inside each other";
    if (kind == as::asTC_IDENTIFIER && token.size() > kLongestName) {
        return "a name of more than 100 bytes";
    }
    if (path_ > kLongestPath) return "names joined by :: of more than 250 bytes";
    if (longest_list() > kLongestList) {
        return "too many parameters or arguments, or too long names of types";
    }
    return nullptr;
}

}  // namespace

std::string SourceCheck::problem(const as::asIScriptEngine& engine, const std::string& name,
                                 const std::string& code, int firstLine) {
    Scan scan(longest_);
    std::size_t lineStart = 0;
    int line = firstLine;
    as::asUINT length = 0;
    for (std::size_t at = 0; at < code.size(); at += length) {
        const as::asETokenClass kind = engine.ParseToken(&code[at], code.size() - at, &length);
        const std::string_view token = std::string_view(code).substr(at, length);
        if (kind != as::asTC_COMMENT && kind != as::asTC_WHITESPACE) {
            const char* const why = scan.take(token, kind);
            if (why != nullptr) {
                return place_text(name.c_str(), line, static_cast<int>(at - lineStart + 1)) +
                       "error: " + why + "\n";
            }
        }
        line += static_cast<int>(std::count(token.begin(), token.end(), '\n'));
        const std::size_t lineEnd = token.rfind('\n');
        if (lineEnd != std::string_view::npos) lineStart = at + lineEnd + 1;
    }
    return "";
}

// --- files

Sources::Sources(const as::asIScriptEngine& engine, as::CScriptBuilder& builder, SourceCheck& check)
    : engine_(engine), builder_(builder), check_(check) {
    builder.SetIncludeCallback(include, this);
}

bool Sources::add(const std::string& name, const std::string& code, int firstLine) {
    bytes_ += code.size();
    problem_ = bytes_ > kMostBytes
                   ? place_text(name.c_str(), 0, 0) + "error: sources of more than 4 MB in all\n"
                   : check_.problem(engine_, name, code, firstLine);
    // A size of 0 stands for a text up to its NUL, which an empty text begins with.
    return problem_.empty() &&
           builder_.AddSectionFromMemory(name.c_str(), code.c_str(),
                                         static_cast<unsigned>(code.size()), firstLine - 1) >= 0;
}

bool Sources::add_file(const std::string& path) {
    std::error_code error;
    const std::string name = std::filesystem::absolute(path, error).lexically_normal().string();
    if (!files_.insert(name).second) return true;
    std::ifstream file(path, std::ios::binary);
    std::string code;
    char block[1 << 14];
    while (code.size() <= kMostBytes && (file.read(block, sizeof block), file.gcount() > 0)) {
        code.append(block, static_cast<std::size_t>(file.gcount()));
    }
    if (!file.is_open() || file.bad()) {
        problem_ = place_text(name.c_str(), 0, 0) + "error: " + std::strerror(errno) + "\n";
        return false;
    }
    return add(name, code, 1);
}

int Sources::include(const char* file, const char* from, as::CScriptBuilder*, void* given) {
    auto& self = *static_cast<Sources*>(given);
    const std::filesystem::path folder = std::filesystem::path(from).parent_path();
    if (self.depth_ == kDeepestInclude) {
        self.problem_ = place_text(from, 0, 0) + "error: more than 50 files include each other\n";
        return as::asERROR;
    }
    ++self.depth_;
    const bool added = self.add_file((folder / file).string());
    --self.depth_;
    return added ? as::asSUCCESS : as::asERROR;
}

}  // namespace uxscript
