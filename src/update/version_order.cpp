#include "update/version_order.h"

#include <QString>

#include <string>
#include <string_view>

namespace tralio {
namespace {

using CodePoints = std::u32string_view;

bool isDigit(char32_t character) {
    return character >= U'0' && character <= U'9';
}

/// Removes the number at the front of `text` and returns its digits without leading zeros. It is never
/// converted, since it may be longer than any integer.
CodePoints takeNumber(CodePoints& text) {
    const std::size_t end = std::min(text.find_first_not_of(U"0123456789"), text.size());
    const CodePoints digits = text.substr(0, end);
    text.remove_prefix(end);
    return digits.substr(std::min(digits.find_first_not_of(U'0'), digits.size()));
}

std::weak_ordering compareNumbers(CodePoints left, CodePoints right) {
    if (left.size() != right.size())
        return left.size() <=> right.size();
    return left <=> right;
}

}  // namespace

std::weak_ordering compareVersions(QStringView left, QStringView right) {
    const std::u32string leftText = left.toString().toStdU32String();
    const std::u32string rightText = right.toString().toStdU32String();
    CodePoints restOfLeft = leftText;
    CodePoints restOfRight = rightText;
    while (!restOfLeft.empty() && !restOfRight.empty()) {
        std::weak_ordering order = std::weak_ordering::equivalent;
        if (isDigit(restOfLeft.front()) && isDigit(restOfRight.front())) {
            order = compareNumbers(takeNumber(restOfLeft), takeNumber(restOfRight));
        } else {
            order = restOfLeft.front() <=> restOfRight.front();
            restOfLeft.remove_prefix(1);
            restOfRight.remove_prefix(1);
        }
        if (std::is_neq(order))
            return order;
    }
    return restOfLeft.size() <=> restOfRight.size();
}

}  // namespace tralio
