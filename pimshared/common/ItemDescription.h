#ifndef PIMTLV_PIMSHARED_COMMON_ITEMDESCRIPTION_H
#define PIMTLV_PIMSHARED_COMMON_ITEMDESCRIPTION_H

// The one description of an item's operations, which everything that needs
// to iterate them (receivers that record or ignore calls, the document form
// of an item, replay into a creator) is generated from.
//
// An item lists its operations once, as an X-macro LIST(OP, OP0, OVERLOAD):
//   OP(Member, "argName", ...)            an operation with arguments
//   OP0(Member)                           an operation without arguments
//   OVERLOAD(Member, Name, (Types), ...)  one overload of Member, called Name
// Argument names are what documents call the arguments; a null name marks
// the length that follows a data pointer (documents carry it with the data).
//
// From the list, PIMTLV_DESCRIBE_OPERATIONS makes one type per operation
// (its member pointer, name and argument names) and the list of them, and
// PIMTLV_DESCRIBE_RECEIVER makes a receiver that hands every call to a sink.
// The two cannot drift from the interface: a member the list names wrongly
// does not compile, a wrong number of argument names fails a static_assert,
// and a pure virtual the list leaves out keeps the generated receiver
// abstract, which its own static_assert refuses.

#include <array>
#include <cstddef>
#include <cstring>
#include <tuple>
#include <type_traits>

namespace PimShared {
namespace Description {

template <typename F>
struct MemberTraits;
template <typename C, typename... P>
struct MemberTraits<bool (C::*)(P...)> {
    using Class = C;
    using Params = std::tuple<P...>;
    static constexpr std::size_t kArity = sizeof...(P);
};

template <typename... S>
constexpr std::array<const char*, sizeof...(S)> Names(S... names) {
    return {{names...}};
}

// The parameter types of a member function type F, as Param<I>.
template <typename F>
struct Signature {
    using Traits = MemberTraits<F>;
    template <std::size_t I>
    using Param = std::tuple_element_t<I, typename Traits::Params>;
};

// Picks the overload of a member that takes P..., as a pointer to a member
// of the class that declares it (a converted pointer cannot be a template
// argument).
template <typename... P>
struct Overload {
    template <typename C>
    static constexpr auto Of(bool (C::*fn)(P...)) {
        return fn;
    }
};

// What an operation is, for code that does not know its type: its name and
// its argument names (null for a length carried by the data before it).
struct OperationInfo {
    const char* name;
    const char* const* args;
    std::size_t arity;
};

// The operations of an item, in the order the list gives them.
template <typename... Ops>
struct OperationList {
    static constexpr std::size_t kCount = sizeof...(Ops);

    // Calls visit(Op{}) for every operation, in order; stops at the first
    // visit that answers true and answers whether one did.
    template <typename Visit>
    static bool Any(Visit&& visit) {
        return (visit(Ops{}) || ...);
    }

    // The runtime view of every operation.
    static const OperationInfo* Infos() {
        static constexpr OperationInfo infos[] = {
            {Ops::kName, Ops::kArgs.data(), Ops::kArgs.size()}...};
        return infos;
    }

    // The position of operation Op in the list.
    template <typename Op>
    static constexpr std::size_t IndexOf() {
        constexpr bool same[] = {std::is_same_v<Op, Ops>...};
        for (std::size_t i = 0; i < kCount; ++i) {
            if (same[i]) return i;
        }
        return kCount;
    }

    // The position of the operation called name, or kCount.
    static std::size_t Find(const char* name) {
        const OperationInfo* infos = Infos();
        for (std::size_t i = 0; i < kCount; ++i) {
            if (std::strcmp(infos[i].name, name) == 0) return i;
        }
        return kCount;
    }
};

// The list's entries begin with a placeholder so that every entry can be
// written with a leading comma.
template <typename First, typename... Ops>
struct OperationListOf;
template <typename... Ops>
struct OperationListOf<void, Ops...> {
    using Type = OperationList<Ops...>;
};

// Whether argument I of an operation is the length of the data argument
// before it: documents carry the two as one value.
template <typename Op, std::size_t I>
constexpr bool IsDataLength() {
    if constexpr (I == 0) {
        return false;
    } else {
        using Before =
            std::remove_cv_t<std::remove_reference_t<typename Op::template Param<I - 1>>>;
        using This = std::remove_cv_t<std::remove_reference_t<typename Op::template Param<I>>>;
        return std::is_same_v<Before, const void*> && std::is_integral_v<This>;
    }
}

// The fields of a record an operation takes (an extension parameter, a
// mailbox, ...): Record<T>::kFields holds the member pointers, kNames what
// documents call them, in the same order. Specialised beside each record's
// item description.
template <typename T>
struct Record;

// A sink that takes nothing, to check that generated receivers are complete.
struct NoSink {
    template <typename Op, typename... A>
    bool Call(const A&...) {
        return true;
    }
    bool Trace(const int&, const char*) { return true; }
};

}  // namespace Description

// The item whose receiver is Receiver: ItemOfReceiver<ICalendarReceiver>::Type
// is EventItem. Each item's description declares the function it is found by.
template <typename Receiver>
struct ItemOfReceiver {
    using Type = decltype(PimtlvItemOfReceiver(static_cast<Receiver*>(nullptr)));
};

}  // namespace PimShared

// Counting the arguments of a macro (1 to 16).
#define PIMTLV_DESC_NARG(...) \
    PIMTLV_DESC_NARG_(__VA_ARGS__, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0)
#define PIMTLV_DESC_NARG_(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, a16, \
                          N, ...)                                                                \
    N
#define PIMTLV_DESC_CAT(a, b) PIMTLV_DESC_CAT_(a, b)
#define PIMTLV_DESC_CAT_(a, b) a##b
#define PIMTLV_DESC_UNPAREN(...) __VA_ARGS__

// Parameters a0..aN-1 of operation type O, and the list of their names.
#define PIMTLV_DESC_P1(O) [[maybe_unused]] O::Param<0> a0
#define PIMTLV_DESC_P2(O) PIMTLV_DESC_P1(O), [[maybe_unused]] O::Param<1> a1
#define PIMTLV_DESC_P3(O) PIMTLV_DESC_P2(O), [[maybe_unused]] O::Param<2> a2
#define PIMTLV_DESC_P4(O) PIMTLV_DESC_P3(O), [[maybe_unused]] O::Param<3> a3
#define PIMTLV_DESC_P5(O) PIMTLV_DESC_P4(O), [[maybe_unused]] O::Param<4> a4
#define PIMTLV_DESC_P6(O) PIMTLV_DESC_P5(O), [[maybe_unused]] O::Param<5> a5
#define PIMTLV_DESC_P7(O) PIMTLV_DESC_P6(O), [[maybe_unused]] O::Param<6> a6
#define PIMTLV_DESC_P8(O) PIMTLV_DESC_P7(O), [[maybe_unused]] O::Param<7> a7
#define PIMTLV_DESC_P9(O) PIMTLV_DESC_P8(O), [[maybe_unused]] O::Param<8> a8
#define PIMTLV_DESC_P10(O) PIMTLV_DESC_P9(O), [[maybe_unused]] O::Param<9> a9
#define PIMTLV_DESC_P11(O) PIMTLV_DESC_P10(O), [[maybe_unused]] O::Param<10> a10
#define PIMTLV_DESC_P12(O) PIMTLV_DESC_P11(O), [[maybe_unused]] O::Param<11> a11
#define PIMTLV_DESC_P13(O) PIMTLV_DESC_P12(O), [[maybe_unused]] O::Param<12> a12
#define PIMTLV_DESC_P14(O) PIMTLV_DESC_P13(O), [[maybe_unused]] O::Param<13> a13
#define PIMTLV_DESC_P15(O) PIMTLV_DESC_P14(O), [[maybe_unused]] O::Param<14> a14
#define PIMTLV_DESC_P16(O) PIMTLV_DESC_P15(O), [[maybe_unused]] O::Param<15> a15
#define PIMTLV_DESC_A1 a0
#define PIMTLV_DESC_A2 PIMTLV_DESC_A1, a1
#define PIMTLV_DESC_A3 PIMTLV_DESC_A2, a2
#define PIMTLV_DESC_A4 PIMTLV_DESC_A3, a3
#define PIMTLV_DESC_A5 PIMTLV_DESC_A4, a4
#define PIMTLV_DESC_A6 PIMTLV_DESC_A5, a5
#define PIMTLV_DESC_A7 PIMTLV_DESC_A6, a6
#define PIMTLV_DESC_A8 PIMTLV_DESC_A7, a7
#define PIMTLV_DESC_A9 PIMTLV_DESC_A8, a8
#define PIMTLV_DESC_A10 PIMTLV_DESC_A9, a9
#define PIMTLV_DESC_A11 PIMTLV_DESC_A10, a10
#define PIMTLV_DESC_A12 PIMTLV_DESC_A11, a11
#define PIMTLV_DESC_A13 PIMTLV_DESC_A12, a12
#define PIMTLV_DESC_A14 PIMTLV_DESC_A13, a13
#define PIMTLV_DESC_A15 PIMTLV_DESC_A14, a14
#define PIMTLV_DESC_A16 PIMTLV_DESC_A15, a15

// One operation type: Fn its member pointer, Name its name in documents.
#define PIMTLV_DESC_OPERATION(Name, Fn, Args)                                              \
    struct Name {                                                                          \
        static constexpr auto kFn = Fn;                                                    \
        using Traits = ::PimShared::Description::MemberTraits<decltype(Fn)>;               \
        using Target = Attributes;                                                         \
        template <std::size_t I>                                                           \
        using Param =                                                                      \
            typename ::PimShared::Description::Signature<decltype(Fn)>::template Param<I>; \
        static constexpr const char* kName = #Name;                                        \
        static constexpr auto kArgs = ::PimShared::Description::Names Args;                \
        static_assert(kArgs.size() == Traits::kArity, "one name per argument of " #Name);  \
    };
#define PIMTLV_DESC_DEFINE_OP(Member, ...) \
    PIMTLV_DESC_OPERATION(Member, &Attributes::Member, (__VA_ARGS__))
#define PIMTLV_DESC_DEFINE_OP0(Member) PIMTLV_DESC_OPERATION(Member, &Attributes::Member, ())
#define PIMTLV_DESC_DEFINE_OVERLOAD(Member, Name, Types, ...)                                   \
    PIMTLV_DESC_OPERATION(                                                                      \
        Name,                                                                                   \
        ::PimShared::Description::Overload<PIMTLV_DESC_UNPAREN Types>::Of(&Attributes::Member), \
        (__VA_ARGS__))
#define PIMTLV_DESC_LIST_OP(Member, ...) , Member
#define PIMTLV_DESC_LIST_OP0(Member) , Member
#define PIMTLV_DESC_LIST_OVERLOAD(Member, Name, Types, ...) , Name

// The operations of an item as the struct Ops: one nested type per operation
// and List, the OperationList of all of them. Attributes is the interface the
// operations are members of (or base of it).
#define PIMTLV_DESCRIBE_OPERATIONS(Ops, AttributesType, LIST)                             \
    struct Ops {                                                                          \
        using Attributes = AttributesType;                                                \
        LIST(PIMTLV_DESC_DEFINE_OP, PIMTLV_DESC_DEFINE_OP0, PIMTLV_DESC_DEFINE_OVERLOAD)  \
        using List = ::PimShared::Description::OperationListOf<void LIST(                 \
            PIMTLV_DESC_LIST_OP, PIMTLV_DESC_LIST_OP0, PIMTLV_DESC_LIST_OVERLOAD)>::Type; \
    };

// Receiver slots: each hands its call to the sink as Call<Op>(arguments).
#define PIMTLV_DESC_SLOT_(Member, Op, N)                                                  \
    bool Member(PIMTLV_DESC_CAT(PIMTLV_DESC_P, N)(Ops::Op)) override {                    \
        return m_sink.template Call<typename Ops::Op>(PIMTLV_DESC_CAT(PIMTLV_DESC_A, N)); \
    }
#define PIMTLV_DESC_SLOT(Member, ...) \
    PIMTLV_DESC_SLOT_(Member, Member, PIMTLV_DESC_NARG(__VA_ARGS__))
#define PIMTLV_DESC_SLOT0(Member)                            \
    bool Member() override {                                 \
        return m_sink.template Call<typename Ops::Member>(); \
    }
#define PIMTLV_DESC_SLOT_OVERLOAD(Member, Name, Types, ...) \
    PIMTLV_DESC_SLOT_(Member, Name, PIMTLV_DESC_NARG(__VA_ARGS__))

// Slots that answer true and keep nothing, for the do-nothing receivers.
#define PIMTLV_DESC_IGNORE_(Member, Fn, N)                                                        \
    bool Member(PIMTLV_DESC_CAT(PIMTLV_DESC_P,                                                    \
                                N)(::PimShared::Description::Signature<decltype(Fn)>)) override { \
        return true;                                                                              \
    }
#define PIMTLV_DESC_IGNORE(Member, ...) \
    PIMTLV_DESC_IGNORE_(Member, &Attributes::Member, PIMTLV_DESC_NARG(__VA_ARGS__))
#define PIMTLV_DESC_IGNORE0(Member) \
    bool Member() override {        \
        return true;                \
    }
#define PIMTLV_DESC_IGNORE_OVERLOAD(Member, Name, Types, ...)                                   \
    PIMTLV_DESC_IGNORE_(                                                                        \
        Member,                                                                                 \
        ::PimShared::Description::Overload<PIMTLV_DESC_UNPAREN Types>::Of(&Attributes::Member), \
        PIMTLV_DESC_NARG(__VA_ARGS__))

// The body of a do-nothing receiver: every operation of LIST, members of
// AttributesType, and TraceMessage answer true and keep nothing. Written in
// the class body of a receiver's base, so that an embedder derives from it
// and overrides only the calls it needs; a pure virtual the list leaves out
// keeps the class abstract, which the receiver's tests notice.
#define PIMTLV_DESCRIBE_DO_NOTHING(AttributesType, LIST)                       \
  private:                                                                     \
    using Attributes = AttributesType;                                         \
                                                                               \
  public:                                                                      \
    LIST(PIMTLV_DESC_IGNORE, PIMTLV_DESC_IGNORE0, PIMTLV_DESC_IGNORE_OVERLOAD) \
    bool TraceMessage(const int& /*code*/, const char* /*text*/) override {    \
        return true;                                                           \
    }

// Two templates: Slots<Base, Sink> implements every operation of LIST on
// Base (the item's receiver or its Attributes interface) by handing it to the
// sink as sink.Call<Op>(arguments...), the sink's answer being the slot's;
// Name<Sink> is the receiver, whose traces go to sink.Trace(code, text).
#define PIMTLV_DESCRIBE_RECEIVER(Name, Slots, Receiver, OpsType, LIST)         \
    template <typename Base, typename Sink>                                    \
    class Slots : public Base {                                                \
      public:                                                                  \
        using Ops = OpsType;                                                   \
        explicit Slots(Sink& sink) : m_sink(sink) {}                           \
        virtual ~Slots() = default;                                            \
        LIST(PIMTLV_DESC_SLOT, PIMTLV_DESC_SLOT0, PIMTLV_DESC_SLOT_OVERLOAD)   \
                                                                               \
      protected:                                                               \
        Sink& m_sink;                                                          \
    };                                                                         \
    template <typename Sink>                                                   \
    class Name : public Slots<Receiver, Sink> {                                \
      public:                                                                  \
        explicit Name(Sink& sink) : Slots<Receiver, Sink>(sink) {}             \
        bool TraceMessage(const int& code, const char* text) override {        \
            return this->m_sink.Trace(code, text);                             \
        }                                                                      \
    };                                                                         \
    static_assert(!std::is_abstract_v<Name<::PimShared::Description::NoSink>>, \
                  #Name ": the description leaves out an operation of " #Receiver);

// Everything above for one item, and the item as code that iterates items
// sees it: struct Item with its kind (as documents and the tool name it),
// interfaces, parser, creator (void: the library only reads the item), its
// Operations and its generated receiver templates.
#define PIMTLV_DESCRIBE_ITEM(Item, Kind, AttributesType, ReceiverType, ParserType, CreatorType, \
                             OpsName, ReceiverName, SlotsName, LIST)                            \
    PIMTLV_DESCRIBE_OPERATIONS(OpsName, AttributesType, LIST)                                   \
    PIMTLV_DESCRIBE_RECEIVER(ReceiverName, SlotsName, ReceiverType, OpsName, LIST)              \
    struct Item {                                                                               \
        static constexpr const char* kKind = Kind;                                              \
        using Operations = OpsName;                                                             \
        using Attributes = AttributesType;                                                      \
        using Receiver = ReceiverType;                                                          \
        using Parser = ParserType;                                                              \
        using Creator = CreatorType;                                                            \
        template <typename Sink>                                                                \
        using ReceiverFor = ReceiverName<Sink>;                                                 \
        template <typename Base, typename Sink>                                                 \
        using SlotsFor = SlotsName<Base, Sink>;                                                 \
    };                                                                                          \
    inline Item PimtlvItemOfReceiver(ReceiverType*) {                                           \
        return {};                                                                              \
    }

#endif
