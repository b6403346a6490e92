// A document as the page of uxtree view wants it.
#include "view_data.h"

#include <algorithm>
#include <utility>

#include "support/json.h"

namespace uxtool {
namespace {

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

// writeEntry(i, text) appends an entry to an empty text.
template <typename WriteEntry>
void write_list(Output& out, std::string_view name, std::size_t size, WriteEntry&& writeEntry) {
    out.print(",\n\"{}\":[", name);
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text.assign(i == 0 ? "" : ",");
        writeEntry(i, text);
        out.write(text);
    }
    out.write("]");
}

}  // namespace

void ViewData::Start(std::string_view name, const UXXmlAttribute* attributes, std::size_t count) {
    take_text_between();
    add_node(number_of(name));
    for (std::size_t i = 0; i < count; ++i) {
        values_ += attributes[i].value;
        attributes_.push_back({number_of(attributes[i].name), values_.size()});
    }
    open_.push_back({nodes_.size() - 1, false});
}

void ViewData::End() {
    const Open open = open_.back();
    if (open.hasNodes) {
        take_text_between();
    } else {
        nodes_[open.node].text = std::exchange(text_, {});
    }
    nodes_[open.node].size = nodes_.size() - open.node - 1;
    open_.pop_back();
    text_.clear();
}

std::uint32_t ViewData::number_of(std::string_view name) {
    const auto [place, isNew] = numbers_.emplace(name, static_cast<std::uint32_t>(names_.size()));
    if (isNew) names_.emplace_back(name);
    return place->second;
}

void ViewData::add_node(std::uint32_t tag) {
    if (!open_.empty()) open_.back().hasNodes = true;
    nodes_.push_back({tag, attributes_.size(), 0, ""});
}

void ViewData::take_text_between() {
    std::string text = std::exchange(text_, {});
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) return;
    add_node(kNoTag);
    nodes_.back().text = std::move(text);
}

std::string_view ViewData::tag(std::size_t i) const {
    return nodes_[i].tag == kNoTag ? std::string_view() : names_[nodes_[i].tag];
}

std::size_t ViewData::attributes_end(std::size_t i) const {
    return i + 1 < nodes_.size() ? nodes_[i + 1].attributes : attributes_.size();
}

std::string_view ViewData::value(std::size_t attribute) const {
    const std::size_t begin = attribute == 0 ? 0 : attributes_[attribute - 1].end;
    return std::string_view(values_).substr(begin, attributes_[attribute].end - begin);
}

std::vector<ViewData::Attribute> ViewData::attributes(std::size_t i) const {
    std::vector<Attribute> out;
    for (std::size_t k = nodes_[i].attributes; k < attributes_end(i); ++k) {
        out.push_back({names_[attributes_[k].name], value(k)});
    }
    return out;
}

void ViewData::write_attributes(Output& out) const {
    write_list(out, "attrs", size(), [this](std::size_t i, std::string& text) {
        const std::size_t begin = nodes_[i].attributes;
        text += begin == attributes_end(i) ? "0" : "[";
        for (std::size_t k = begin; k < attributes_end(i); ++k) {
            text += k == begin ? "" : ",";
            text += std::to_string(attributes_[k].name) + ",";
            append_string(text, value(k));
            if (k + 1 == attributes_end(i)) text += "]";
        }
    });
}

void ViewData::write(Output& out, const std::string& name) const {
    out.print("{{\"name\":{}", script_string(name));
    write_list(out, "names", names_.size(),
               [this](std::size_t i, std::string& text) { append_string(text, names_[i]); });
    write_list(out, "tags", size(), [this](std::size_t i, std::string& text) {
        text += nodes_[i].tag == kNoTag ? "-1" : std::to_string(nodes_[i].tag);
    });
    write_list(out, "sizes", size(), [this](std::size_t i, std::string& text) {
        text += std::to_string(nodes_[i].size);
    });
    write_attributes(out);
    write_list(out, "texts", size(), [this](std::size_t i, std::string& text) {
        if (nodes_[i].text.empty()) {
            text += '0';
        } else {
            append_string(text, nodes_[i].text);
        }
    });
    out.write("}");
}

}  // namespace uxtool
