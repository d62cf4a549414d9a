// tests/ser/deep_tree.h - trees deeper than a stack, and small stacks to save them on.
#pragma once

#include <pthread.h>

#include <functional>
#include <stdexcept>

#include "murv/fields.h"

namespace murv::tests
{

/// Arrays within each other; the innermost one is empty.
inline CFields nestedArrays(unsigned int levels)
{
    CFields root(DT_array);
    CFields* node = &root;
    for (unsigned int i = 1; i < levels; ++i)
        node = &node->addArrayAt(CFields(DT_array));
    return root;
}

/// Runs the action on a thread with a stack of one megabyte.
inline void onSmallStack(std::function<void()> action)
{
    pthread_attr_t attributes;
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    const bool started = pthread_attr_init(&attributes) == 0 &&
                         pthread_attr_setstacksize(&attributes, std::size_t{1} << 20) == 0 &&
                         pthread_create(&thread, &attributes, run, &action) == 0;
    if (!started)
        throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace murv::tests
