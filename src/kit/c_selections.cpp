// Selections for C.
#include <memory>
#include <string>
#include <utility>

#include "uxtree/kit/c.h"
#include "uxtree/kit/select.h"

#include "kit/c_arguments.h"
#include "kit/c_last_error.h"
#include "kit/c_texts.h"

using namespace ux::kit;

namespace {

constexpr int kUnusable = -1;
constexpr int kMixedText = -2;

static_assert(UX_SELECTED_DOCUMENT == static_cast<int>(UXSelectedKind::kDocument) &&
              UX_SELECTED_ELEMENT == static_cast<int>(UXSelectedKind::kElement) &&
              UX_SELECTED_ATTRIBUTE == static_cast<int>(UXSelectedKind::kAttribute) &&
              UX_SELECTED_TEXT == static_cast<int>(UXSelectedKind::kText));

int mixed_text() {
    return refused(kMixedText,
                   "the answer depends on text that stands beside child elements, in an order "
                   "that the tree does not hold");
}

bool in_range(const UXSelected* found, int index) {
    if (found == nullptr) return refused(false, "the result is null");
    if (index < 0 || static_cast<std::size_t>(index) >= found->size()) {
        return refused(false, "there is nothing at that position");
    }
    return true;
}

}  // namespace

UXSelection* ux_select_compile(const char* path) {
    return guarded<UXSelection*>(nullptr, [&]() -> UXSelection* {
        if (!accept_text(path)) return nullptr;
        auto selection = std::make_unique<UXSelection>();
        UXSelectFault fault;
        if (selection->compile(path, &fault)) return selection.release();
        last_error().line = 1;
        last_error().column = narrow(fault.position + 1);
        return refused<UXSelection*>(nullptr,
                                     fault.message + " at byte " + std::to_string(fault.position));
    });
}

void ux_select_free(UXSelection* selection) {
    delete selection;
}

UXSelected* ux_selected_new() {
    return guarded<UXSelected*>(nullptr, [] { return std::make_unique<UXSelected>().release(); });
}

void ux_selected_free(UXSelected* found) {
    delete found;
}

int ux_select_run(const UXSelection* selection, const UXXmlWrapperBase* node, UXSelected* found,
                  UXXmlWrapperBase* mixed) {
    return guarded(kUnusable, [&] {
        if (selection == nullptr) return refused(kUnusable, "the selection is null");
        if (!usable(node) || !given(found)) return kUnusable;
        UXSelected result;
        switch (selection->run(*node, result)) {
            case UXSelectOutcome::kDone:
                *found = std::move(result);
                return narrow(found->size());
            case UXSelectOutcome::kMixedText:
                if (mixed != nullptr) *mixed = result.mixed();
                return mixed_text();
            case UXSelectOutcome::kOutOfMemory:
                return refused(kUnusable, "out of memory");
            default:
                return refused(kUnusable, "nothing was compiled");
        }
    });
}

int ux_selected_count(const UXSelected* found) {
    return guarded(kUnusable, [&] {
        return found != nullptr ? narrow(found->size()) : refused(kUnusable, "the result is null");
    });
}

int ux_selected_kind(const UXSelected* found, int index) {
    return guarded(kUnusable, [&] {
        if (!in_range(found, index)) return kUnusable;
        return static_cast<int>(found->kind(static_cast<std::size_t>(index)));
    });
}

int ux_selected_node(const UXSelected* found, int index, UXXmlWrapperBase* out) {
    return guarded(0, [&] {
        if (!in_range(found, index) || !given(out)) return 0;
        const UXXmlWrapperBase node = found->node(static_cast<std::size_t>(index));
        if (!usable(&node)) return 0;
        *out = node;
        return 1;
    });
}

int ux_selected_attr(const UXSelected* found, int index, CStringUTF8* out) {
    return guarded(0, [&] {
        if (!in_range(found, index) || !given(out)) return 0;
        *out = CStringUTF8(found->attribute(static_cast<std::size_t>(index)));
        return 1;
    });
}

int ux_selected_text(const UXSelected* found, int index, CStringUTF8* out) {
    return guarded(0, [&] {
        if (!in_range(found, index) || !given(out)) return 0;
        const auto at = static_cast<std::size_t>(index);
        const UXXmlWrapperBase node = found->node(at);
        if (!usable(&node)) return 0;
        CStringUTF8 text;
        if (!found->text(at, text)) return mixed_text();
        *out = std::move(text);
        return 1;
    });
}
