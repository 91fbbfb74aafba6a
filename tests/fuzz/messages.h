#pragma once

#include "fuzz/fuzz.h"
#include "platform/linux/helpers/frames.h"

namespace tralio::fuzz {

/// Gives `read` what the input holds between the program and one beside it, which comes cut at odd places.
template <typename Read>
void readMessages(const QByteArray& input, const Read& read) {
    frames::Reader reader(1 << 20);
    for (qsizetype at = 0; at < input.size(); at += 61) {
        reader.add(input.mid(at, 61));
        while (const auto payload = reader.next())
            read(*payload);
    }
}

}  // namespace tralio::fuzz
