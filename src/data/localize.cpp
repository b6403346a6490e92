// Texts in the user's language, by way of the host's message module.
#include <atomic>
#include <mutex>

#include "uxtree/data/labels.h"
#include "uxtree/host/services.h"

#include "data/labels_detail.h"
#include "frame/guards.h"
#include "frame/runtime_module.h"

using namespace ux;

namespace {

using LocalizeFunction = int(CStringUTF8* result, const char* text, int category);
using CategoryFunction = int(int category, CStringUTF8* result);

std::atomic<bool>& block_localization() {
    static std::atomic<bool> blocked{false};
    return blocked;
}

// Each thread's own, since callers read it after the call.
CStringUTF8& result_of_this_thread() {
    thread_local CStringUTF8 result;
    return result;
}

// The host's message module, loaded when a text is first asked for. One failure, of loading or of
// finding a function, ends all attempts.
class MessageModule {
public:
    static MessageModule& instance() {
        static MessageModule module;
        return module;
    }

    const char* localize(const char* text) {
        CStringUTF8& result = result_of_this_thread();
        if (text == nullptr) return result;
        if (LocalizeFunction* const function = find(localize_, "LocalizeString")) {
            function(&result, text, 0);
        } else {
            result = text;
        }
        return result;
    }

    const char* switch_category(int category) {
        CStringUTF8& result = result_of_this_thread();
        CategoryFunction* const function = find(setCategory_, "SetCurrentCategory");
        if (function != nullptr) function(category, &result);
        return result;
    }

private:
    MessageModule() = default;

    template <typename Function>
    Function* find(Function*& known, const char* name) {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (known != nullptr || failed_) return known;
        if (module_ == nullptr) {
            module_ = open_runtime_module({UXGetHostServices().messageModule,
                                           "UXTREE_HOST_MESSAGE_MODULE", "libuxhostmsg.so"});
        }
        if (module_ != nullptr) known = find_runtime_function<Function>(module_, name);
        if (known == nullptr) give_up();
        return known;
    }

    // A function that is held keeps its module loaded.
    void give_up() {
        failed_ = true;
        if (localize_ != nullptr || setCategory_ != nullptr) return;
        close_runtime_module(module_);
        module_ = nullptr;
    }

    std::mutex mutex_;
    void* module_ = nullptr;
    LocalizeFunction* localize_ = nullptr;
    CategoryFunction* setCategory_ = nullptr;
    bool failed_ = false;
};

}  // namespace

namespace ux {

const char* _tree_localize(const char* text, int category) {
    if (block_localization()) return text;
    MessageModule& module = MessageModule::instance();
    if (text == nullptr && category != 0) return module.switch_category(category);
    return module.localize(text);
}

}  // namespace ux

bool VCTreeAccessBlockLocalization(bool* value, bool get) {
    std::atomic<bool>& blocked = block_localization();
    if (value != nullptr) {
        if (get) {
            *value = blocked;
        } else {
            blocked = *value;
        }
    }
    return blocked;
}
