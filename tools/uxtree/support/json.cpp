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

void JsonList::add(const Json& entry) {
    begin_entry();
    out_.write(json_text(entry));
}

void JsonList::finish() {
    out_.write(empty_ ? "[]\n" : "\n]\n");
}

}  // namespace uxtool
