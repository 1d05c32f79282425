#pragma once

#include <cstdlib>
#include <memory>

/// Frees an answer of the X server in the way that its library asks for.
struct FreeXcbReply {
    void operator()(void *reply) const { std::free(reply); }
};

/// An answer of the X server; null where there was none.
template<typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;
