#pragma once

#include "fuzz/fuzz.h"
#include "platform/linux/helpers/frames.h"

namespace tralio::fuzz {

/// Reads what the input holds between the program and one beside it, which comes cut at odd places, as either
/// of them would, and writes it again.
template <typename DecodeRequest, typename DecodeReply>
void readMessages(const QByteArray& input, DecodeRequest decodeRequest, DecodeReply decodeReply) {
    frames::Reader reader(1 << 20);
    for (qsizetype at = 0; at < input.size(); at += 61) {
        reader.add(input.mid(at, 61).toStdString());
        while (const auto payload = reader.next()) {
            if (const auto request = decodeRequest(*payload))
                (void)encode(*request);
            if (const auto reply = decodeReply(*payload))
                (void)encode(*reply);
        }
    }
}

}  // namespace tralio::fuzz
