// Work on a thread with a small stack.
#include "support/small_stack.h"

#include <stdexcept>

#include <pthread.h>

namespace uxtest {

void on_small_stack(const std::function<void()>& body, std::size_t size) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size);
    pthread_t thread{};
    const auto run = [](void* task) -> void* {
        (**static_cast<const std::function<void()>**>(task))();
        return nullptr;
    };
    const std::function<void()>* task = &body;
    if (pthread_create(&thread, &attributes, run, &task) != 0) {
        throw std::runtime_error("no thread with a small stack");
    }
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace uxtest
