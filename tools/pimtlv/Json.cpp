#include "Json.h"

#include <algorithm>
#include <stdexcept>

#include "Input.h"

namespace pimtlv_tool {

void ThrowArgError(const ArgPlace& place, const std::string& what) {
    throw UsageError("call " + std::to_string(place.call) + " (" + place.op + "): argument '" +
                     place.arg + "' " + what);
}

std::string HexOf(const void* data, std::size_t size) {
    // One unbroken run of digits: compact in a one-line call, and any white
    // space a person adds when editing is ignored on the way back.
    std::string hex = EncodeHex(static_cast<const std::uint8_t*>(data), size, 0);
    hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
    return hex;
}

bool BytesOfHex(const std::string& text, std::vector<std::uint8_t>& out) {
    try {
        out = DecodeHex(text);
        return true;
    } catch (const UsageError&) {
        return false;
    }
}

Json Codec<PAL::CDateAndTime>::ToJson(const PAL::CDateAndTime& v) {
    PAL::CString text;
    PAL::DateAndTimeUtilities::ToString(v, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar, 0,
                                        PAL::DateAndTimeUtilities::STimeZoneOffset(), text);
    return Json(text.c_str());
}

void Codec<PAL::CDateAndTime>::FromJson(const Json& j, Holder& h, const ArgPlace& place) {
    // An absent date-time argument is the unset (all-zero) value, which is
    // written and decoded as this text: it must read back as itself.
    if (j.is_string() && j.get<std::string>() == ToJson(PAL::CDateAndTime()).get<std::string>()) {
        h.value = PAL::CDateAndTime();
        return;
    }
    if (!j.is_string() || !PAL::DateAndTimeUtilities::FromString(
                              h.value, j.get<std::string>().c_str(),
                              PAL::DateAndTimeUtilities::eDateTimeFormatICalendar)) {
        ThrowArgError(place, "must be a date-time text such as \"20261122T093000Z\"");
    }
}

void Codec<const void*>::FromJson(const Json& j, Holder& h, const ArgPlace& place) {
    if (j.is_null()) return;
    if (!j.is_string() || !BytesOfHex(j.get<std::string>(), h.bytes)) {
        ThrowArgError(place, "must be a hex string or null");
    }
    h.null = false;
}

bool Recorder::Trace(int code, const char* text) {
    Json d = Json::object();
    d["code"] = code;
    d["text"] = text == nullptr ? "" : text;
    d["call"] = m_calls.size();
    m_diagnostics.push_back(std::move(d));
    return true;
}

const OpEntry& Recorder::Find(const void* key) const {
    for (const OpEntry& op : m_ops) {
        if (op.key == key) return op;
    }
    // A receiver slot without a table row is a mistake in the tool itself.
    throw std::logic_error("receiver operation missing from the item's table");
}

}  // namespace pimtlv_tool
