#ifndef PIMTLV_TESTS_SUPPORT_CALLTEXT_H
#define PIMTLV_TESTS_SUPPORT_CALLTEXT_H

// The arguments of a receiver call, as the recorders of the tests write them:
// one text per argument, made by the recorder's own formatter, joined by its
// separator. A data pointer and the length after it are one value, handed to
// the formatter as Data, so that a recorder can show the bytes.

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "pimshared/common/ItemDescription.h"

namespace TestSupport {

struct Data {
    const void* data;
    unsigned int length;
};

template <typename Op, typename Format, typename Args, std::size_t... I>
std::string ArgTextsOf([[maybe_unused]] Format& format, [[maybe_unused]] const char* separator,
                       [[maybe_unused]] bool skipEmpty, [[maybe_unused]] const Args& args,
                       std::index_sequence<I...>) {
    std::string text;
    bool first = true;
    [[maybe_unused]] auto add = [&](auto index) {
        constexpr std::size_t i = decltype(index)::value;
        if constexpr (!PimShared::Description::IsDataLength<Op, i>()) {
            using T = std::decay_t<std::tuple_element_t<i, Args>>;
            std::string one;
            if constexpr (std::is_same_v<T, const void*>) {
                one = format(Data{std::get<i>(args), std::get<i + 1>(args)});
            } else {
                one = format(std::get<i>(args));
            }
            if (skipEmpty && one.empty()) return;
            if (!first) text += separator;
            first = false;
            text += one;
        }
    };
    (add(std::integral_constant<std::size_t, I>{}), ...);
    return text;
}

// The arguments of operation Op, each through format, joined by separator.
template <typename Op, typename Format, typename... A>
std::string ArgTexts(Format&& format, const char* separator, const A&... args) {
    return ArgTextsOf<Op>(format, separator, false, std::forward_as_tuple(args...),
                          std::index_sequence_for<A...>{});
}

// The same, leaving out the arguments whose text is empty.
template <typename Op, typename Format, typename... A>
std::string NonEmptyArgTexts(Format&& format, const char* separator, const A&... args) {
    return ArgTextsOf<Op>(format, separator, true, std::forward_as_tuple(args...),
                          std::index_sequence_for<A...>{});
}

}  // namespace TestSupport

#endif
