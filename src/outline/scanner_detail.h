// The grammar's events as calls of a handler.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "outline/byte_search.h"
#include "outline/scanner.h"

namespace ux {

// A sink of the grammar (see markup.h) that foresees nothing.
class HandlerSink {
public:
    explicit HandlerSink(SaxHandler& handler) : handler_(handler) {}

    static constexpr const KnownText* expected_tag() { return nullptr; }
    static constexpr const KnownText* expected_attribute() { return nullptr; }
    static constexpr const KnownText* expected_end() { return nullptr; }
    void begin_expected() {}
    void attribute_expected() {}
    void end_expected() {}

    void begin(std::string_view name) {
        name_ = name;
        attributes_.clear();
    }
    void attribute(std::string_view name) { attributes_.emplace_back(name); }
    void start() { handler_.startElement(name_, attributes_); }
    void start_and_end() {
        start();
        handler_.endElement(name_);
    }
    // Intended: an end tag that does not fit is dropped and closes nothing.
    void end(std::string_view name) {
        const std::vector<std::string>& open = handler_.nameStack();
        if (!open.empty() && open.back() == name) handler_.endElement(std::string(name));
    }

private:
    SaxHandler& handler_;
    std::string name_;
    std::vector<std::string> attributes_;
};

}  // namespace ux
