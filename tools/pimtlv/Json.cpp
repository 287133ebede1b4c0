#include "Json.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "Input.h"

namespace PimTool {

std::string HexOf(const void* data, std::size_t size) {
    // One unbroken run of digits: compact in a one-line call, and any white
    // space a person adds when editing is ignored on the way back.
    std::string hex = EncodeHex(static_cast<const std::uint8_t*>(data), size, 0);
    hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
    return hex;
}

Json Codec<PAL::CDateAndTime>::ToJson(const PAL::CDateAndTime& v) {
    PAL::CString text;
    PAL::DateAndTimeUtilities::ToString(v, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar, 0,
                                        PAL::DateAndTimeUtilities::STimeZoneOffset(), text);
    return Json(text.c_str());
}

void TextOut::Flush() {
    m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
    m_text.clear();
}

Spill::~Spill() {
    if (m_file != nullptr) std::fclose(m_file);
}

void Spill::Append(std::string_view text) {
    if (m_fileSize == 0 && m_memory.size() + text.size() <= kInMemory) {
        m_memory.append(text);
        return;
    }
    if (m_file == nullptr) {
        m_file = std::tmpfile();
        if (m_file == nullptr) throw UsageError("cannot make a temporary file");
    }
    if (!m_memory.empty()) {
        if (std::fwrite(m_memory.data(), 1, m_memory.size(), m_file) != m_memory.size()) {
            throw UsageError("cannot write a temporary file");
        }
        m_fileSize += m_memory.size();
        m_memory.clear();
        m_memory.shrink_to_fit();
    }
    if (std::fwrite(text.data(), 1, text.size(), m_file) != text.size()) {
        throw UsageError("cannot write a temporary file");
    }
    m_fileSize += text.size();
}

void Spill::Drain(const std::function<void(std::string_view)>& piece) {
    if (m_fileSize != 0) {
        std::rewind(m_file);
        std::string buffer(std::size_t{1} << 16, '\0');
        for (std::size_t left = m_fileSize; left > 0;) {
            const std::size_t n = std::fread(&buffer[0], 1, std::min(left, buffer.size()), m_file);
            if (n == 0) throw UsageError("cannot read a temporary file back");
            piece(std::string_view(buffer.data(), n));
            left -= n;
        }
        std::rewind(m_file);
        m_fileSize = 0;
    }
    if (!m_memory.empty()) piece(m_memory);
    m_memory.clear();
}

void HeldDiagnostics::Add(int code, const char* text, std::size_t call) {
    if (text == nullptr) text = "";
    if (m_last.count != 0 && m_last.code == code && m_last.call == call && m_last.text == text) {
        ++m_last.count;
        return;
    }
    if (m_last.count != 0) Keep(m_last);
    m_last.code = code;
    m_last.call = call;
    m_last.count = 1;
    m_last.text = text;
}

// A run as a record: its numbers, the text's length, the text.
void HeldDiagnostics::Keep(const Run& run) {
    const std::size_t numbers[] = {static_cast<std::size_t>(run.code), run.call, run.count,
                                   run.text.size()};
    m_earlier.Append(std::string_view(reinterpret_cast<const char*>(numbers), sizeof numbers));
    m_earlier.Append(run.text);
}

void HeldDiagnostics::Drain(
    const std::function<void(int, std::string_view, std::size_t, std::size_t)>& show) {
    if (m_last.count == 0) return;
    Keep(m_last);
    m_last.count = 0;
    std::string pending;  // records read back, cut anywhere by the pieces
    std::size_t used = 0;
    m_earlier.Drain([&](std::string_view piece) {
        pending.erase(0, used);
        used = 0;
        pending.append(piece);
        std::size_t numbers[4];
        while (pending.size() - used >= sizeof numbers) {
            std::memcpy(numbers, pending.data() + used, sizeof numbers);
            if (pending.size() - used - sizeof numbers < numbers[3]) break;
            const std::string_view text(pending.data() + used + sizeof numbers, numbers[3]);
            show(static_cast<int>(numbers[0]), text, numbers[1], numbers[2]);
            used += sizeof numbers + numbers[3];
        }
    });
}

void AppendJson(std::string& out, const Json& value) {
    nlohmann::detail::serializer<Json> writer(nlohmann::detail::output_adapter<char>(out), ' ',
                                              Json::error_handler_t::replace);
    writer.dump(value, false, false, 0);
}

void AppendJsonText(std::string& out, const char* text) {
    if (text == nullptr) {
        out += "null";
        return;
    }
    // Most texts are printable ASCII and go as they are; the rest take the
    // JSON library's escaping and its repair of bytes that are not UTF-8.
    const char* end = text;
    while (*end >= 0x20 && *end < 0x7F && *end != '"' && *end != '\\') ++end;
    if (*end == 0) {
        out += '"';
        out.append(text, end);
        out += '"';
        return;
    }
    AppendJson(out, Json(text));
}

const OpEntry& Recorder::Find(const void* key) const {
    for (const OpEntry& op : m_ops) {
        if (op.key == key) return op;
    }
    // A receiver slot without a table row is a mistake in the tool itself.
    throw std::logic_error("receiver operation missing from the item's table");
}

}  // namespace PimTool
