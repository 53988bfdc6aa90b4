// Each key becomes a number that orders like it, and for a text, of which the number holds the
// first bytes, a view of the whole: most comparisons look at the numbers alone. The first key of an
// object stands beside it in the list that is sorted, further keys in a list of their own.
#include "fliodram/MMSortExpr.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fliodram/MMObjectSet.h"
#include "fliodram/MMReadAhead.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// A value as it is ordered: by kind first, numbers by value with NaN behind all, texts by bytes.
struct SortKey {
    std::uint64_t number = 0;
    std::string_view text;
    MMValue::Kind kind = MMValue::Kind::boolean;
};

int orderOf(bool isLess, bool isGreater) { return isLess ? -1 : (isGreater ? 1 : 0); }

int compare(MMEvaluationContext& context, const SortKey& left, const SortKey& right) {
    if (left.kind != right.kind) {
        return orderOf(left.kind < right.kind, true);
    }
    if (left.number != right.number) {
        return orderOf(left.number < right.number, true);
    }
    context.countBytes(std::min(left.text.size(), right.text.size()));
    return left.text.compare(right.text);
}

// Reals in their order: the bits of a negative one fall as it rises.
std::uint64_t numberOf(double real) {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
    if (real != real) {
        return ~std::uint64_t{0};
    }
    const auto bits = std::bit_cast<std::uint64_t>(real == 0.0 ? 0.0 : real);
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

// The first eight bytes, the first of them the most significant.
std::uint64_t numberOf(std::string_view text) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i) {
        number = number << 8U | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    }
    return number;
}

}  // namespace

/// One evaluation of a sort: takes the objects with their keys, then orders them.
class MMSortExpr::Sorting {
public:
    Sorting(MMEvaluationContext& context, const std::deque<Key>& keys)
        : context_(context), keys_(keys), kept_(context) {}

    std::vector<MMObject> run(const std::vector<MMObject>& objects) {
        kept_.add(objects.size() * bytesPerObject());
        entries_.reserve(objects.size());
        furtherKeys_.reserve(objects.size() * furtherKeyCount());
        const MMObjectRange range = rangeOf(objects);
        MMReadAhead ahead(range);
        for (const MMObject& object : range) {
            add(object);
            if (!keys_.empty()) {
                ahead.after(object, *keys_.front().function, context_.getModel());
            }
        }
        std::stable_sort(entries_.begin(), entries_.end(),
                         [this](const Entry& left, const Entry& right) {
                             context_.step();
                             return isBefore(left, right);
                         });
        std::vector<MMObject> sorted(objects.size());
        std::transform(entries_.begin(), entries_.end(), sorted.begin(),
                       [](const Entry& entry) { return entry.object; });
        return sorted;
    }

private:
    struct Entry {
        SortKey key;
        MMObject object;
        std::size_t number;  // in the order in which they came
    };

    // All keys but the first, which stands with the object.
    std::size_t furtherKeyCount() const { return keys_.empty() ? 0 : keys_.size() - 1; }

    // In the collection, the sorted one and the list that is sorted, of which sorting copies half.
    std::size_t bytesPerObject() const {
        return 2 * sizeof(MMObject) + sizeof(Entry) * 3 / 2 + furtherKeyCount() * sizeof(SortKey);
    }

    void add(MMObject object) {
        Entry entry{{}, object, entries_.size()};
        for (const Key& key : keys_) {
            context_.step();
            const SortKey value = evaluate(*key.function, object);
            if (&key == &keys_.front()) {
                entry.key = value;
            } else {
                furtherKeys_.push_back(value);
            }
        }
        entries_.push_back(entry);
    }

    SortKey evaluate(const MMValueAbsExpr& function, MMObject object) {
        MMValue value = function.evaluateFor(context_, object);
        switch (value.getKind()) {
            case MMValue::Kind::boolean:
                return {value.getBoolean() ? 1U : 0U, {}, MMValue::Kind::boolean};
            case MMValue::Kind::integer:
                return {numberOf(static_cast<double>(value.getInteger())), {}, value.getKind()};
            case MMValue::Kind::real:
                return {numberOf(value.getReal()), {}, MMValue::Kind::real};
            case MMValue::Kind::text:
                break;
        }
        const std::string_view text = keep(value);
        return {numberOf(text), text, MMValue::Kind::text};
    }

    // The text of a value that goes.
    std::string_view keep(MMValue& value) {
        std::string buffer;
        const std::string_view text = value.releaseText(buffer);
        if (text.data() != buffer.data()) {
            return text;
        }
        kept_.add(sizeof(std::string) + buffer.capacity());
        return texts_.emplace_back(std::move(buffer));
    }

    bool isBefore(const Entry& left, const Entry& right) const {
        int order = compare(context_, left.key, right.key);
        bool isAscending = keys_.empty() || keys_.front().isAscending;
        for (std::size_t i = 1; order == 0 && i < keys_.size(); ++i) {
            order = compare(context_, furtherKey(left, i), furtherKey(right, i));
            isAscending = keys_[i].isAscending;
        }
        return isAscending ? order < 0 : order > 0;
    }

    const SortKey& furtherKey(const Entry& entry, std::size_t number) const {
        return furtherKeys_[entry.number * (keys_.size() - 1) + number - 1];
    }

    MMEvaluationContext& context_;
    const std::deque<Key>& keys_;
    MMKeptBytes kept_;
    std::vector<Entry> entries_;
    std::vector<SortKey> furtherKeys_;  // those of one object side by side
    std::deque<std::string> texts_;     // that belong to nobody else
};

MMSortExpr::MMSortExpr() : collection_(*this) {}

void MMSortExpr::collection(const OrvCyclicPtr<MMObjectCollectionExpr>& collection) {
    collection_ = collection;
}

void MMSortExpr::key(const OrvCyclicPtr<MMValueAbsExpr>& function, bool isAscending) {
    keys_.emplace_back(*this, function, isAscending);
}

bool MMSortExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    const std::vector<MMObject> objects = MMObjectCollector::collect(context, *collection_);
    const std::vector<MMObject> sorted = Sorting(context, keys_).run(objects);
    MMKeptBytes kept(context);
    kept.add((objects.size() + sorted.size()) * sizeof(MMObject));
    return consumer.take(rangeOf(sorted));
}

void MMSortExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMSortExpr").operand(collection_.get());
    for (const Key& key : keys_) {
        printer.nested("key").operand(key.function.get()).flag(key.isAscending).end();
    }
    printer.end();
}
