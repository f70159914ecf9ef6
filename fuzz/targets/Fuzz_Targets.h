#pragma once
// The fuzz targets: what each does with one input, in the sandbox. The
// libFuzzer programs (fuzz_<name>) and the replay of the committed corpora
// in the test run (fuzz/corpus/<name>/) call the same bodies through
// Run_Input, so a corpus file means the same to both.
#include "targets/Fuzz_Sandbox.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vex::fuzz {

using Target_Body = void (*)(Sandbox& box, std::span<const uint8_t> input);

struct Target {
    const char* name; // of the program and of its corpus folder
    Target_Body body;
};

// A pack file in \new, as the inbox hands it to the decoder.
void Pack_File(Sandbox& box, std::span<const uint8_t> input);
// Read.Vex of a pack day filed into \new and \mpack, then the inbox pass.
void Pack_Filing(Sandbox& box, std::span<const uint8_t> input);
// SysRead.Vex, the system page.
void Sys_File(Sandbox& box, std::span<const uint8_t> input);
// A filed model "130" log with its filing note.
void Usb_130(Sandbox& box, std::span<const uint8_t> input);
// A model "250" log on a medium, into day files in \new.
void Usb_250(Sandbox& box, std::span<const uint8_t> input);
// A day file in \new: saved ".NTD" or the "250" road's.
void Ntd(Sandbox& box, std::span<const uint8_t> input);
// File names and filing notes of the inbox.
void Inbox_Names(Sandbox& box, std::span<const uint8_t> input);
// A package of any bytes, imported.
void Package(Sandbox& box, std::span<const uint8_t> input);
// The names of an FTP listing and the trip files among them.
void Remote_Names(Sandbox& box, std::span<const uint8_t> input);

// A stored trip with a day file of any bytes, counted again.
void Recount(Sandbox& box, std::span<const uint8_t> input);

// A spreadsheet template of any bytes, filled and saved.
void Xlsx_Template(Sandbox& box, std::span<const uint8_t> input);

const std::vector<Target>& Targets();
// Null for a name that isn't a target's.
const Target* Target_Named(const char* name);

// One input through a target in the current sandbox, then the sandbox's
// checks. True when the input left rows or files.
bool Run_Input(const Target& target, std::span<const uint8_t> input);

} // namespace vex::fuzz
