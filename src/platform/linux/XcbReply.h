#pragma once

#include <cstdlib>
#include <memory>

struct FreeXcbReply {
    void operator()(void *reply) const { std::free(reply); }
};

/// A reply or an event of the X server, which the receiver frees.
template <typename Reply> using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;
