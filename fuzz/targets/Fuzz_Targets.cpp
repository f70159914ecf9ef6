#include "targets/Fuzz_Targets.h"

#include <cstring>

namespace vex::fuzz {

const std::vector<Target>& Targets()
{
    static const std::vector<Target> targets = {
        {"fuzz_pack_file", Pack_File}, {"fuzz_pack_filing", Pack_Filing}, {"fuzz_sys_file", Sys_File},
        {"fuzz_usb_130", Usb_130},     {"fuzz_usb_250", Usb_250},         {"fuzz_ntd", Ntd},
        {"fuzz_inbox_names", Inbox_Names}, {"fuzz_package", Package},     {"fuzz_remote_names", Remote_Names},
        {"fuzz_xlsx_template", Xlsx_Template}, {"fuzz_recount", Recount},
    };
    return targets;
}

const Target* Target_Named(const char* name)
{
    for (const Target& t : Targets())
        if (std::strcmp(t.name, name) == 0)
            return &t;
    return nullptr;
}

bool Run_Input(const Target& target, std::span<const uint8_t> input)
{
    Sandbox& box = Current_Sandbox();
    target.body(box, input);
    return box.Finish_Input();
}

} // namespace vex::fuzz
