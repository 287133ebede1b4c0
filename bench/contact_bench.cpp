// A contact with a typical set of properties and a 20 KB photo: writing it
// (every operation, End and GetData), parsing it back into a receiver, and
// the plain TLV walk of the same bytes as the floor the parser stands on;
// with PIMTLV_BENCH_PROTOBUF, beside Protocol Buffers on the same content.

#include <benchmark/benchmark.h>

#include <vector>

#include "bench/TlvYardsticks.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/contact/ContactDescription.h"

#ifdef PIMTLV_BENCH_PROTOBUF
#include "bench/ProtobufLoops.h"
#include "contact_bench.pb.h"
#endif

namespace {

using Texts = PAL::TVector<const char*>;
using XParams = PAL::TVector<PimShared::tXParam>;

const std::vector<unsigned char>& PhotoBytes() {
    static const std::vector<unsigned char> photo = [] {
        std::vector<unsigned char> p(20 * 1024);
        for (std::size_t i = 0; i < p.size(); ++i) p[i] = static_cast<unsigned char>(i * 31u);
        return p;
    }();
    return photo;
}

bool WriteContact(PimShared::CTLVContactCreator& c, unsigned int instance) {
    static const XParams x = {{"X-SOURCE", "phone"}};
    static const XParams none;
    static const Texts categories = {"Friends", "Work"};
    static const Texts units = {"Engineering", "Platform"};
    const std::vector<unsigned char>& photo = PhotoBytes();
    const unsigned int photoLength = static_cast<unsigned int>(photo.size());
    return c.Reset() && c.Begin(instance) && c.Version("3.0") &&
           c.FormattedName("Ann-Kathrin Lee", nullptr, none) &&
           c.Name("Lee", "Ann-Kathrin", nullptr, "Dr.", nullptr, "de", none) &&
           c.Telephone("+49 30 1234567", 0x11, 0, 0, nullptr, x) &&
           c.Telephone("+49 170 7654321", 0x21, 1, 0, nullptr, none) &&
           c.Email("ann.lee@example.org", 0x01) && c.Email("ann@home.example", 0x02) &&
           c.Address(nullptr, nullptr, "Hauptstrasse 5", "Berlin", nullptr, "10115", "Germany",
                     0x04, nullptr, none) &&
           c.Organization("Example GmbH", units) && c.Title("Engineer", nullptr, none) &&
           c.Note("Met at the conference; prefers e-mail.", "en", none) &&
           c.Birthday("19850412", nullptr) && c.Categories(categories, nullptr, none) &&
           c.URL("https://example.org/~ann") && c.UID("4f1c2a9e-0d6b-4f7e-9a43-1b2c3d4e5f60") &&
           c.Photo(nullptr, "image/jpeg", photo.data(), photoLength, nullptr) &&
           c.PhotoAvailability(true) && c.End();
}

// Counts what arrives and keeps nothing.
struct CountingSink {
    unsigned long long calls = 0;
    template <typename Op, typename... A>
    bool Call(const A&...) {
        ++calls;
        return true;
    }
    bool Trace(const int&, const char*) {
        ++calls;
        return true;
    }
};

// The sink comes first, so that it exists when the receiver is handed it.
class CountingReceiver : public CountingSink, public PimShared::TContactReceiverFor<CountingSink> {
  public:
    CountingReceiver()
        : PimShared::TContactReceiverFor<CountingSink>(static_cast<CountingSink&>(*this)) {}
};

using PimTlvBench::NullTarget;

// The contact's bytes, written once for the reading benchmarks.
const std::vector<unsigned char>& ContactBytes() {
    static const std::vector<unsigned char> bytes = [] {
        PimShared::CTLVContactCreator c;
        const void* data = nullptr;
        unsigned int length = 0;
        if (!WriteContact(c, 1) || !c.GetData(data, length)) return std::vector<unsigned char>();
        const unsigned char* p = static_cast<const unsigned char*>(data);
        return std::vector<unsigned char>(p, p + length);
    }();
    return bytes;
}

void BM_ContactCreateAndGetData(benchmark::State& state) {
    PimShared::CTLVContactCreator c;
    unsigned int length = 0;
    for (auto _ : state) {
        const void* data = nullptr;
        if (!WriteContact(c, 1) || !c.GetData(data, length)) state.SkipWithError("write failed");
        benchmark::DoNotOptimize(data);
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<long long>(state.iterations()) * length);
}
BENCHMARK(BM_ContactCreateAndGetData);

// Reads the contact's bytes once per iteration with parser (a contact parser
// or the bare TLV walk: both have the same Parse).
template <typename Parser>
void ReadLoop(benchmark::State& state, Parser& parser) {
    const std::vector<unsigned char>& bytes = ContactBytes();
    const unsigned int length = static_cast<unsigned int>(bytes.size());
    for (auto _ : state) {
        const char* error = nullptr;
        unsigned int consumed = 0;
        if (!parser.Parse(bytes.data(), length, error, consumed))
            state.SkipWithError("read failed");
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<long long>(state.iterations()) * length);
}

void BM_ContactParse(benchmark::State& state) {
    CountingReceiver receiver;
    PimShared::CTLVContactParser parser(receiver);
    ReadLoop(state, parser);
    benchmark::DoNotOptimize(receiver.calls);
}
BENCHMARK(BM_ContactParse);

void BM_TlvWalkOfContactBytes(benchmark::State& state) {
    NullTarget target;
    ParserCreatorCollection::CTLVParser walker(target);
    ReadLoop(state, walker);
}
BENCHMARK(BM_TlvWalkOfContactBytes);

#ifdef PIMTLV_BENCH_PROTOBUF
void AddX(google::protobuf::RepeatedPtrField<pimbench::XParam>* out, const char* name,
          const char* value) {
    auto* x = out->Add();
    x->set_name(name);
    x->set_value(value);
}

// The same content as WriteContact.
void BuildContact(pimbench::Contact& c, std::string& out) {
    const std::vector<unsigned char>& photo = PhotoBytes();
    c.set_instance(1);
    c.set_version("3.0");
    c.mutable_formatted_name()->set_text("Ann-Kathrin Lee");
    auto* n = c.mutable_name();
    n->set_family("Lee");
    n->set_given("Ann-Kathrin");
    n->set_prefix("Dr.");
    n->set_language("de");
    auto* t = c.add_telephone();
    t->set_number("+49 30 1234567");
    t->set_type(0x11);
    AddX(t->mutable_x(), "X-SOURCE", "phone");
    t = c.add_telephone();
    t->set_number("+49 170 7654321");
    t->set_type(0x21);
    t->set_preferred(1);
    auto* e = c.add_email();
    e->set_address("ann.lee@example.org");
    e->set_type(0x01);
    e = c.add_email();
    e->set_address("ann@home.example");
    e->set_type(0x02);
    auto* a = c.add_address();
    a->set_street("Hauptstrasse 5");
    a->set_locality("Berlin");
    a->set_postal_code("10115");
    a->set_country("Germany");
    a->set_type(0x04);
    c.mutable_organization()->set_name("Example GmbH");
    c.mutable_organization()->add_unit("Engineering");
    c.mutable_organization()->add_unit("Platform");
    c.mutable_title()->set_text("Engineer");
    c.mutable_note()->set_text("Met at the conference; prefers e-mail.");
    c.mutable_note()->set_language("en");
    c.set_birthday("19850412");
    c.add_category("Friends");
    c.add_category("Work");
    c.set_url("https://example.org/~ann");
    c.set_uid("4f1c2a9e-0d6b-4f7e-9a43-1b2c3d4e5f60");
    c.mutable_photo()->set_type("image/jpeg");
    c.mutable_photo()->set_data(photo.data(), photo.size());
    c.set_photo_available(true);
    c.SerializeToString(&out);
}

using PimTlvBench::ProtobufBuildAndSerialize;
using PimTlvBench::ProtobufParse;

BENCHMARK_TEMPLATE(ProtobufBuildAndSerialize, pimbench::Contact, BuildContact)
    ->Name("Contact/Protobuf/BuildAndSerialize");
BENCHMARK_TEMPLATE(ProtobufParse, pimbench::Contact, BuildContact)
    ->Name("Contact/Protobuf/ParseFromString");
#endif

}  // namespace
