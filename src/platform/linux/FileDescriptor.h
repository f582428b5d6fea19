#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

/// Owns an open file of the system and closes it.
class FileDescriptor final {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}

    FileDescriptor(FileDescriptor &&other) noexcept : m_descriptor(other.release()) {}

    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        // What was held here goes with `other`.
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    ~FileDescriptor()
    {
        if (isValid()) {
            ::close(m_descriptor);
        }
    }

    [[nodiscard]] bool isValid() const { return m_descriptor >= 0; }

    [[nodiscard]] int get() const { return m_descriptor; }

    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor = -1;
};
