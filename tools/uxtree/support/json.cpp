// Escaping, and lists with one entry per line.
#include "support/json.h"

namespace uxtool {

std::string json_text(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string json_string(std::string_view text) {
    return json_text(Json(text));
}

void JsonList::begin_entry() {
    out_.write(empty_ ? "[\n  " : ",\n  ");
    empty_ = false;
}

std::string script_string(std::string_view text) {
    const std::string quoted = json_string(text);
    std::string out;
    out.reserve(quoted.size());
    for (std::size_t i = 0; i < quoted.size(); ++i) {
        const char next = i + 1 < quoted.size() ? quoted[i + 1] : '\0';
        if (quoted[i] == '<' && next == '!') {
            out += "\\u003c";
        } else {
            out += quoted[i];
            if (quoted[i] == '<' && next == '/') out += '\\';
        }
    }
    return out;
}

void JsonList::add(const Json& entry) {
    begin_entry();
    out_.write(json_text(entry));
}

void JsonList::finish() {
    out_.write(empty_ ? "[]\n" : "\n]\n");
}

}  // namespace uxtool
