#include "model/change.h"

#include <algorithm>

namespace {

using Kind = Change::Kind;

bool InPlace(Kind kind) {
    return kind == Kind::Times || kind == Kind::Text;
}

std::int32_t Length(const Change& change) {
    return change.last - change.first + 1;
}

} // namespace

Change Merged(const Change& earlier, const Change& later) {
    if (InPlace(earlier.kind) && InPlace(later.kind))
        return {std::max(earlier.kind, later.kind), std::min(earlier.first, later.first),
                std::max(earlier.last, later.last)};
    if (earlier.kind == Kind::Inserted) {
        if (InPlace(later.kind) && later.first >= earlier.first && later.last <= earlier.last)
            return earlier;
        if (later.kind == Kind::Inserted && later.first >= earlier.first &&
            later.first <= earlier.last + 1)
            return {Kind::Inserted, earlier.first, earlier.last + Length(later)};
    }
    if (earlier.kind == Kind::Deleted && later.kind == Kind::Deleted &&
        later.first <= earlier.first && later.last >= earlier.first - 1)
        return {Kind::Deleted, later.first, later.last + Length(earlier)};
    return {Kind::Replaced, std::min(earlier.first, later.first), 0};
}
