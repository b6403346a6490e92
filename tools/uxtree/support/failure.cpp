// What a failed command prints.
#include "support/failure.h"

#include <cstdio>

#include "support/platform.h"
#include "support/style.h"
#include "support/text.h"

namespace uxtool {
namespace {

thread_local std::string* heldBack = nullptr;
thread_local std::vector<std::string>* heldNotes = nullptr;

// File names and contents may hold what steers a terminal.
void print(const std::string& text) {
    if (heldBack != nullptr) {
        *heldBack += text;
        return;
    }
    const std::string shown = is_terminal(kStandardError) ? terminal_safe(text) : text;
    std::fwrite(shown.data(), 1, shown.size(), stderr);
}

void print_line(Role role, const std::string& label, const std::string& text) {
    const Palette palette = palette_for_errors();
    print(palette.paint(role, visible(label) + ":") + " " + visible_lines(text) + "\n");
}

}  // namespace

HeldMessages::HeldMessages() : outer_(std::exchange(heldBack, &text_)) {}

HeldMessages::~HeldMessages() {
    heldBack = outer_;
}

bool HeldMessages::is_held() {
    return heldBack != nullptr;
}

void print_messages(const std::string& text) {
    print(text);
}

HeldNotes::HeldNotes(bool wait) : outer_(heldNotes) {
    if (wait) heldNotes = &waiting_;
}

void HeldNotes::say() {
    heldNotes = outer_;
    for (const std::string& text : waiting_) note(text);
    waiting_.clear();
}

void HeldNotes::drop() {
    heldNotes = outer_;
    waiting_.clear();
}

void report(const Failure& failure) {
    print_line(Role::kError, failure.subject(), failure.what());
    if (!failure.excerpt().empty()) print(failure.excerpt() + "\n");
    if (!failure.hint().empty()) print_line(Role::kHint, "hint", failure.hint());
}

void note(const std::string& text) {
    if (heldNotes != nullptr) return heldNotes->push_back(text);
    print_line(Role::kHint, "note", visible(text));
}
void warn(const std::string& text) {
    print_line(Role::kError, "warning", visible(text));
}

}  // namespace uxtool
