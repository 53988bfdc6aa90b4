// The last key that an expression asked its model for.
#pragma once

#include <string>
#include <string_view>

#include "fliodram/MMExpr.h"

/// Remembers which key a name has in a model, so that an expression looks a name up once and not
/// once an object. Member of the expression that needs it.
class MMKeyCache {
public:
    /// The key of `name`, by `find(model, name)` where it is not the one remembered.
    template <class Find>
    MMKey keyOf(const MMModel& model, std::string_view name, Find find) {
        if (model_ != model.identity() || name_ != name) {
            key_ = find(model, name);
            name_ = name;
            model_ = model.identity();
        }
        return key_;
    }

private:
    std::string name_;
    std::uint64_t model_ = 0;
    MMKey key_ = mmUnknownKey;
};
