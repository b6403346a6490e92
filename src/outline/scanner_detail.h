// The grammar's events as calls of a handler.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "outline/markup.h"
#include "outline/scanner.h"

namespace ux {

// A sink of the grammar; see markup.h.
class HandlerSink : public PlainSink {
public:
    explicit HandlerSink(SaxHandler& handler) : handler_(handler) {}

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
