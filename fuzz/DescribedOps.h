#ifndef PIMTLV_FUZZ_DESCRIBEDOPS_H
#define PIMTLV_FUZZ_DESCRIBEDOPS_H

// The operation tables of the round trips, made from the items' descriptions:
// every operation but Begin and End, its arguments read from the input by
// their parameter types (a text, a list of texts, x-parameters, a date, data
// and its length, a flag, an enumeration, a number). What an item's parser
// gives back other than written stays data of the item: Rules::Default<P>(i)
// is the asymmetry of argument i of type P, Rules::kArgRules the exceptions
// by operation and argument, and Rules::kSpecial the operations that bring
// their own table row (another shape when read, reports, nesting).

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "fuzz/ItemRoundTrip.h"
#include "pimshared/common/ItemDescription.h"

namespace PimTlvFuzz {

// The asymmetry of one argument of one operation, where it differs from the
// item's default for its type.
struct ArgRule {
    const char* op;
    std::size_t arg;
    Asym rule;
};

constexpr bool SameName(const char* a, const char* b) {
    while (*a != 0 && *a == *b) ++a, ++b;
    return *a == *b;
}

// Not given (0xFFFFFFFF, a quarter of the time), or a value below 2^31 whose
// low byte travels.
template <typename E>
E Optional(OpArgs& a) {
    const bool given = a.Number() % 4 != 3;
    const std::uint32_t value = a.Number(Asym::LowByte) & 0x7FFFFFFFu;
    return static_cast<E>(given ? value : 0xFFFFFFFFu);
}

template <typename Rules, typename O, std::size_t I>
constexpr Asym RuleOf() {
    for (const ArgRule& r : Rules::kArgRules) {
        if (SameName(r.op, O::kName) && r.arg == I) return r.rule;
    }
    return Rules::template Default<std::decay_t<typename O::template Param<I>>>(I);
}

// Argument I of operation O, read from the input by its type. data keeps the
// last data argument for the length after it.
template <typename Rules, typename O, std::size_t I>
auto ArgOf(OpArgs& a, Bytes& data) {
    using P = std::decay_t<typename O::template Param<I>>;
    constexpr Asym rule = RuleOf<Rules, O, I>();
    if constexpr (PimShared::Description::IsDataLength<O, I>()) {
        return static_cast<P>(data.length);
    } else if constexpr (std::is_same_v<P, const void*>) {
        data = a.Data();
        return data.data;
    } else if constexpr (std::is_same_v<P, const char*>) {
        return a.Text(rule);
    } else if constexpr (std::is_same_v<P, PAL::TVector<const char*>>) {
        return a.Texts(rule);
    } else if constexpr (std::is_same_v<P, PAL::TVector<PimShared::tXParam>>) {
        return a.XParams(rule);
    } else if constexpr (std::is_same_v<P, PAL::CDateAndTime>) {
        return a.DateTime();
    } else if constexpr (std::is_same_v<P, bool>) {
        return a.Number() % 2 == 1;
    } else if constexpr (std::is_same_v<P, PimShared::eRsvpType>) {
        return Optional<P>(a);
    } else if constexpr (std::is_enum_v<P>) {
        return a.Enum<P>(rule);
    } else {
        static_assert(std::is_integral_v<P>, "no value generator for this parameter type");
        return static_cast<P>(a.Number(rule));
    }
}

template <typename Rules, typename O, std::size_t... I>
bool RunWith(typename O::Target& target, [[maybe_unused]] OpArgs& a, std::index_sequence<I...>) {
    [[maybe_unused]] Bytes data{nullptr, 0};
    // Braces read the arguments in order.
    const std::tuple<std::decay_t<typename O::template Param<I>>...> values{
        ArgOf<Rules, O, I>(a, data)...};
    return std::apply([&target](const auto&... v) { return (target.*O::kFn)(v...); }, values);
}

// Runs operation O with arguments read from the input.
template <typename Rules, typename O>
bool RunDescribed(typename O::Target& target, OpArgs& a) {
    return RunWith<Rules, O>(target, a, std::make_index_sequence<O::Traits::kArity>{});
}

template <typename Rules, typename O>
constexpr std::size_t SpecialIndex() {
    std::size_t i = 0;
    while (i < Rules::kSpecial.size() && !SameName(Rules::kSpecial[i].name, O::kName)) ++i;
    return i;
}

// An operation's own row if it has one (then its arguments need no
// generators), else the row made from its description.
template <typename Rules, typename A, typename O>
constexpr Op<A> RowOf() {
    constexpr std::size_t special = SpecialIndex<Rules, O>();
    if constexpr (special < Rules::kSpecial.size()) {
        return Rules::kSpecial[special];
    } else {
        return {O::kName, RunDescribed<Rules, O>};
    }
}

template <typename Rules, typename A, typename List>
struct DescribedTable;
template <typename Rules, typename A, typename... O>
struct DescribedTable<Rules, A, PimShared::Description::OperationList<O...>> {
    static constexpr std::array<Op<A>, sizeof...(O)> kAll{{RowOf<Rules, A, O>()...}};
    // Every row of its own names an operation of the description.
    static constexpr bool EverySpecialUsed() {
        for (const Op<A>& special : Rules::kSpecial) {
            if (!(SameName(special.name, O::kName) || ...)) return false;
        }
        return true;
    }
    static_assert(EverySpecialUsed(), "a row of its own names no operation of the item");
};

// The table of an item described by Description (PimShared::EventItem, ...):
// its operations in the description's order, Begin and End left to the check.
template <typename Description, typename Rules>
constexpr auto DescribedOps() {
    using A = typename Description::Attributes;
    using List = typename Description::Operations::List;
    constexpr auto& all = DescribedTable<Rules, A, List>::kAll;
    static_assert(SameName(all[0].name, "Begin") && SameName(all[1].name, "End"),
                  "a description begins with Begin and End");
    std::array<Op<A>, List::kCount - 2> ops{};
    for (std::size_t i = 2; i < List::kCount; ++i) ops[i - 2] = all[i];
    return ops;
}

}  // namespace PimTlvFuzz

#endif
