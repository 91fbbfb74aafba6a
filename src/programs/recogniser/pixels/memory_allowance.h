#pragma once

#include <QtGlobal>

namespace tralio {

/// For as long as it lives, the process gets so many bytes more than it has by now, and no allocation beyond
/// them succeeds: what takes a foreign picture apart needs memory in proportion to the picture, whatever that
/// announces.
class MemoryAllowance final {
public:
    explicit MemoryAllowance(qint64 bytes);
    MemoryAllowance(const MemoryAllowance&) = delete;
    MemoryAllowance& operator=(const MemoryAllowance&) = delete;
    ~MemoryAllowance();
};

}  // namespace tralio
