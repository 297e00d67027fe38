// Whole files in, whole files out. Names are UTF-8; "-" is the standard stream.
#pragma once

#include <filesystem>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>

inline constexpr std::string_view kStandardStream = "-";

// The streams of one run of the program.
struct StandardStreams
{
    std::istream& in;
    std::ostream& out;
    std::ostream& errors; // for notes: what a command that is done has to say beside its output
};

[[nodiscard]] std::filesystem::path PathFromUtf8(std::string_view name);
[[nodiscard]] std::string Utf8FromPath(const std::filesystem::path& path);

// A file larger than `limit` bytes is refused. Both throw Failure.
[[nodiscard]] std::string ReadFileBytes(const std::filesystem::path& path, std::size_t limit);
[[nodiscard]] std::string ReadInput(const std::string& name, std::size_t limit, const StandardStreams& streams);

// A file appears complete or not at all: it is written beside its place and renamed. An empty name is the standard
// stream. Throws Failure, and leaves what was there.
void WriteOutput(const std::string& name, std::string_view bytes, const StandardStreams& streams);

// One line for people beside what a command has written.
void WriteNote(std::string_view note, const StandardStreams& streams);
