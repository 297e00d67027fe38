// Debug output and debuggers. Nothing here allocates: it is called where memory has just run out.
#include <windows.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "core/utfsteps.h"

namespace
{

void WriteAll(int file, std::string_view text)
{
    while (!text.empty())
    {
        const ssize_t written = write(file, text.data(), text.size());
        if (written <= 0)
            return; // there is nobody to tell
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

// A text in UTF-8, collected in a buffer of its own and written as whole as that allows.
class DebugWriter
{
public:
    void Append(std::string_view encoded)
    {
        if (encoded.size() > sizeof(m_buffer) - m_used)
            Flush();
        std::memcpy(m_buffer + m_used, encoded.data(), encoded.size());
        m_used += encoded.size();
    }

    void Flush()
    {
        WriteAll(STDERR_FILENO, {m_buffer, m_used});
        m_used = 0;
    }

private:
    char m_buffer[512];
    std::size_t m_used = 0;
};

} // namespace

void WINAPI OutputDebugStringW(LPCWSTR text)
{
    if (text == nullptr || std::getenv("WINPORT_DEBUG_OUTPUT") == nullptr)
        return;
    DebugWriter writer;
    for (std::u16string_view rest(text); !rest.empty();)
    {
        const winport::DecodedStep step = winport::DecodeUtf16(rest);
        writer.Append(winport::EncodeUtf8(step.character).View());
        rest.remove_prefix(step.length);
    }
    writer.Flush();
}

void WINAPI DebugBreak()
{
    std::raise(SIGTRAP);
}
