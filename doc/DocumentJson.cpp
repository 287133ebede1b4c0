#include "doc/DocumentJson.h"

#include <cstdint>
#include <limits>
#include <string>

namespace PimDoc {

namespace {

struct Where {
    std::size_t call;
    const char* op;
    const std::string& arg;
};

[[noreturn]] void Fail(const Where& w, const std::string& what) {
    throw DocumentError("call " + std::to_string(w.call) + " (" + w.op + "): argument '" + w.arg +
                        "' " + what);
}

// A JSON value as a document value. Numbers must be integers; a data
// argument's hex string becomes its bytes.
Value ValueOf(const Json& j, bool data, const Where& w) {
    if (data && !j.is_string() && !j.is_null()) Fail(w, "must be a hex string or null");
    if (data && j.is_string()) {
        Bytes bytes;
        if (!BytesOfHex(j.get_ref<const std::string&>(), bytes)) {
            Fail(w, "must be a hex string or null");
        }
        return Value(std::move(bytes));
    }
    switch (j.type()) {
        case Json::value_t::null:
            return Value();
        case Json::value_t::boolean:
            return Value(j.get<bool>());
        case Json::value_t::number_integer:
            return Value(j.get<std::int64_t>());
        case Json::value_t::number_unsigned: {
            const auto n = j.get<std::uint64_t>();
            if (n > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
                return Value(static_cast<double>(n));  // beyond every argument's range
            }
            return Value(static_cast<std::int64_t>(n));
        }
        case Json::value_t::string:
            return Value(j.get<std::string>());
        case Json::value_t::array: {
            List list;
            list.reserve(j.size());
            for (const Json& entry : j) list.push_back(ValueOf(entry, false, w));
            return Value(std::move(list));
        }
        case Json::value_t::object: {
            Record record;
            for (const auto& entry : j.items()) {
                record.push_back(Field{entry.key(), ValueOf(entry.value(), false, w)});
            }
            return Value(std::move(record));
        }
        case Json::value_t::number_float:
            return Value(j.get<double>());
        default:
            Fail(w, "must not be binary data");
    }
}

Call CallFromJsonIn(const Json& j, std::size_t index, const ItemInfo* item) {
    const std::string where = "call " + std::to_string(index);
    if (!j.is_object()) throw DocumentError(where + " must be an object");
    for (const auto& entry : j.items()) {
        if (entry.key() != "op" && entry.key() != "args") {
            throw DocumentError(where + ": unknown key '" + entry.key() + "'");
        }
    }
    const auto op = j.find("op");
    if (op == j.end() || !op->is_string()) {
        throw DocumentError(where + ": \"op\" must name an operation");
    }
    Call call;
    call.op = op->get<std::string>();
    const PimShared::Description::OperationInfo* info = nullptr;
    for (std::size_t i = 0; item != nullptr && i < item->operationCount; ++i) {
        if (call.op == item->operations[i].name) info = &item->operations[i];
    }
    if (info == nullptr) throw DocumentError(where + ": unknown operation '" + call.op + "'");
    const auto args = j.find("args");
    if (args == j.end() || args->is_null()) return call;
    if (!args->is_object()) {
        throw DocumentError(where + " (" + call.op + "): argument 'args' must be an object");
    }
    for (const auto& entry : args->items()) {
        bool data = false;
        bool known = false;
        for (std::size_t i = 0; i < info->arity; ++i) {
            if (info->args[i] == nullptr || entry.key() != info->args[i]) continue;
            known = true;
            data = i + 1 < info->arity && info->args[i + 1] == nullptr;
        }
        if (!known) {
            throw DocumentError(where + " (" + call.op + "): unknown argument '" + entry.key() +
                                "'");
        }
        call.args.push_back(Argument{
            entry.key(), ValueOf(entry.value(), data, Where{index, info->name, entry.key()})});
    }
    return call;
}

}  // namespace

Call CallFromJson(const Json& json, std::size_t index, const ItemInfo& item) {
    return CallFromJsonIn(json, index, &item);
}

Json ToJson(const Value& value) {
    struct Visit {
        Json operator()(std::nullptr_t) const { return Json(nullptr); }
        Json operator()(bool b) const { return Json(b); }
        Json operator()(std::int64_t n) const {
            if (n >= 0) return Json(static_cast<std::uint64_t>(n));
            return Json(n);
        }
        Json operator()(double d) const { return Json(d); }
        Json operator()(const std::string& s) const { return Json(s); }
        Json operator()(const Bytes& b) const { return Json(HexOf(b)); }
        Json operator()(const List& list) const {
            Json j = Json::array();
            for (const Value& v : list) j.push_back(ToJson(v));
            return j;
        }
        Json operator()(const Record& record) const {
            Json j = Json::object();
            for (const Field& f : record) j[f.name] = ToJson(f.value);
            return j;
        }
    };
    return std::visit(Visit{}, value.data);
}

Json ToJson(const Document& document) {
    Json j = Json::object();
    j["item"] = document.item;
    Json calls = Json::array();
    for (const Call& call : document.calls) {
        Json c = Json::object();
        c["op"] = call.op;
        if (!call.args.empty()) {
            Json args = Json::object();
            for (const Argument& a : call.args) args[a.name] = ToJson(a.value);
            c["args"] = std::move(args);
        }
        calls.push_back(std::move(c));
    }
    j["calls"] = std::move(calls);
    Json diagnostics = Json::array();
    for (const Diagnostic& d : document.diagnostics) {
        diagnostics.push_back(Json{{"code", d.code}, {"text", d.text}, {"call", d.call}});
    }
    j["diagnostics"] = std::move(diagnostics);
    j["result"] = Json{{"ok", document.result.ok}, {"consumed", document.result.consumed}};
    return j;
}

Document DocumentFromJson(const Json& json) {
    if (!json.is_object()) throw DocumentError("a document must be a JSON object");
    for (const auto& entry : json.items()) {
        const std::string& k = entry.key();
        if (k != "item" && k != "calls" && k != "diagnostics" && k != "result") {
            throw DocumentError("unknown document key '" + k + "'");
        }
    }
    const auto item = json.find("item");
    if (item == json.end() || !item->is_string()) {
        throw DocumentError("a document needs \"item\", the item kind");
    }
    Document document;
    document.item = item->get<std::string>();
    const ItemInfo* info = FindItem(document.item);
    if (info == nullptr) throw DocumentError("unknown item '" + document.item + "'");
    const auto calls = json.find("calls");
    if (calls == json.end() || !calls->is_array()) {
        throw DocumentError("a document needs \"calls\", an array");
    }
    for (std::size_t i = 0; i < calls->size(); ++i) {
        document.calls.push_back(CallFromJsonIn((*calls)[i], i, info));
    }
    const auto diagnostics = json.find("diagnostics");
    if (diagnostics != json.end() && diagnostics->is_array()) {
        for (const Json& d : *diagnostics) {
            if (!d.is_object()) continue;
            document.diagnostics.push_back(Diagnostic{d.value("code", 0), d.value("text", ""),
                                                      d.value("call", std::size_t{0})});
        }
    }
    const auto result = json.find("result");
    if (result != json.end() && result->is_object()) {
        document.result.ok = result->value("ok", false);
        document.result.consumed = result->value("consumed", std::uint32_t{0});
    }
    return document;
}

std::vector<Document> DocumentsFromJson(const Json& json) {
    std::vector<Document> documents;
    if (json.is_array()) {
        for (const Json& j : json) documents.push_back(DocumentFromJson(j));
    } else {
        documents.push_back(DocumentFromJson(json));
    }
    return documents;
}

}  // namespace PimDoc
