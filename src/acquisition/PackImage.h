#pragma once
// A whole memory pack as a file: the raw bytes of its address space, bank by
// bank and page by page, 16 banks of 32 pages of 2,048 bytes (1 MiB). Byte
// (bank, page, offset) stands at ((bank * 32) + page) * 2048 + offset. An
// erased pack holds 0xFF everywhere. The analyzer emulator serves such a file
// and the sample generator writes one.
#include "acquisition/PackLayout.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace vex {

class PackImage {
public:
    static constexpr int kBanks = 16;
    static constexpr int kPages = 32;
    static constexpr int kPageBytes = 2048;
    static constexpr int kBytes = kBanks * kPages * kPageBytes;

    PackImage(); // erased

    // Empty when the file is missing or not exactly kBytes long.
    static std::optional<PackImage> Load(const QString& path);
    // Written beside the target and renamed over it: never half a file.
    bool Save(const QString& path) const;

    // Two capital hexadecimal characters per byte of the address range; the
    // range is cut at the end of its page (reads never cross pages).
    QString Read_Hex(const PackAddress& at) const;
    // Stores bytes given as hexadecimal text from (bank, page, offset) on,
    // cut at the end of the page. Returns the count of bytes stored; stops at
    // the first pair that isn't hexadecimal.
    int Write_Hex(int bank, int page, int offset, const QString& hex);

    uint8_t Byte(int bank, int page, int offset) const;
    void Set_Byte(int bank, int page, int offset, uint8_t value);

    const QByteArray& Bytes() const { return bytes_; }

private:
    static bool Inside(int bank, int page, int offset);
    static int Index(int bank, int page, int offset);
    QByteArray bytes_;
};

} // namespace vex
