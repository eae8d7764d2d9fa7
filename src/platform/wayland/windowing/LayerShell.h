// SPDX-License-Identifier: MIT

// The generated header as C++ can read it: it calls an argument by one of the language's words.
#pragma once

#include <wayland-client.h>

#define namespace name_space
#include <wlr-layer-shell-unstable-v1-client-protocol.h>
#undef namespace
