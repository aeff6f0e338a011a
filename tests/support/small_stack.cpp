#include "support/small_stack.h"

#include <pthread.h>

bool RunOnStackOf(std::size_t bytes, std::function<void()> work) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) {
        return false;
    }
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    pthread_t thread{};
    const bool started =
        pthread_attr_setstacksize(&attributes, bytes) == 0 && pthread_create(&thread, &attributes, run, &work) == 0;
    pthread_attr_destroy(&attributes);
    return started && pthread_join(thread, nullptr) == 0;
}
