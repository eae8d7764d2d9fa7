// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

struct wl_buffer;
struct wl_output;
struct wl_registry;

namespace pintalux::wayland {

template <auto end> struct EndWith {
    template <typename T> void operator()(T* object) const { end(object); }
};

/// A protocol's object together with the call that ends it.
template <typename T, auto end> using Handle = std::unique_ptr<T, EndWith<end>>;

// The protocol's own calls are different functions in every file, which a type in a header must not name.
void endBuffer(wl_buffer* buffer);
void endOutput(wl_output* output);
void endRegistry(wl_registry* registry);

} // namespace pintalux::wayland
