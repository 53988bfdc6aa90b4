// Attributes and associations by name, as expressions read them of one object after the other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fliodram/MMColumn.h"
#include "fliodram/MMEvaluationContext.h"
#include "fliodram/MMModel.h"

/// Reads one attribute: looks its name up once a model, and reads the columns of a host that has
/// them. Member of the expression that needs it.
class MMAttributeReader {
public:
    /// The attribute `name`, always the same one, of an object or of none: a view of the model's
    /// memory, or of `buffer`, whose content is replaced.
    std::string_view read(MMEvaluationContext& context, std::string_view name, MMObject object,
                          std::string& buffer) {
        std::string_view text;
        if (model_ != context.getModel().identity() || !column_.read(object, text)) {
            return ask(context, name, object, buffer);
        }
        column_.prefetch(object + readAhead);
        return text;
    }

    /// The column of the object that was read last, of this model; else null.
    const MMTextColumn* column(const MMModel& model) const {
        return model_ == model.identity() ? &column_ : nullptr;
    }

    /// Begins anew, with another name.
    void reset() { model_ = 0; }

private:
    std::string_view ask(MMEvaluationContext& context, std::string_view name, MMObject object,
                         std::string& buffer);

    // Objects that follow each other are mostly read one after the other, from whatever loop.
    static constexpr MMObject readAhead = 12;

    std::uint64_t model_ = 0;  // whose key and column they are
    MMKey key_ = mmUnknownKey;
    MMTextColumn column_;
};

/// Reads the names of classes in the same manner.
class MMClassNameReader {
public:
    /// The name of the class of an object, or the empty text for none.
    std::string_view read(const MMModel& model, MMObject object) {
        std::string_view text;
        return model_ == model.identity() && column_.read(object, text) ? text : ask(model, object);
    }

    const MMTextColumn* column(const MMModel& model) const {
        return model_ == model.identity() ? &column_ : nullptr;
    }

private:
    std::string_view ask(const MMModel& model, MMObject object);

    std::uint64_t model_ = 0;
    MMTextColumn column_;
};

/// Reads one association in the same manner.
class MMTargetReader {
public:
    /// The targets of the association `name`, always the same one, from an object: a range of the
    /// model's memory, or of `buffer`, which is empty.
    void read(MMEvaluationContext& context, std::string_view name, MMObject object,
              MMObjectRange& targets, std::vector<MMObject>& buffer) {
        if (!readColumn(context.getModel(), object, targets)) {
            targets = ask(context, name, object, buffer);
        }
    }

    /// The same, as far as the column of the object that was read last tells.
    bool readColumn(const MMModel& model, MMObject object, MMObjectRange& targets) const {
        return model_ == model.identity() && column_.read(object, targets);
    }

    /// Has the targets of an object that will be read soon brought into the cache.
    void prefetch(const MMModel& model, MMObject object) const {
        if (model_ == model.identity()) {
            column_.prefetch(object);
        }
    }

private:
    MMObjectRange ask(MMEvaluationContext& context, std::string_view name, MMObject object,
                      std::vector<MMObject>& buffer);

    std::uint64_t model_ = 0;
    MMKey key_ = mmUnknownKey;
    MMTargetColumn column_;
};
