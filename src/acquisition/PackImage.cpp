#include "acquisition/PackImage.h"

#include <QFile>
#include <QSaveFile>

namespace vex {

PackImage::PackImage() : bytes_(kBytes, char(0xFF)) {}

std::optional<PackImage> PackImage::Load(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly) || f.size() != kBytes)
        return std::nullopt;
    PackImage image;
    image.bytes_ = f.readAll();
    if (image.bytes_.size() != kBytes)
        return std::nullopt;
    return image;
}

bool PackImage::Save(const QString& path) const
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    return f.write(bytes_) == kBytes && f.commit();
}

bool PackImage::Inside(int bank, int page, int offset)
{
    return bank >= 0 && bank < kBanks && page >= 0 && page < kPages && offset >= 0 && offset < kPageBytes;
}

int PackImage::Index(int bank, int page, int offset)
{
    return (bank * kPages + page) * kPageBytes + offset;
}

QString PackImage::Read_Hex(const PackAddress& at) const
{
    if (!Inside(at.bank, at.page, at.offset) || at.count <= 0)
        return {};
    const int count = std::min(at.count, kPageBytes - at.offset);
    return QString::fromLatin1(bytes_.mid(Index(at.bank, at.page, at.offset), count).toHex().toUpper());
}

int PackImage::Write_Hex(int bank, int page, int offset, const QString& hex)
{
    int stored = 0;
    for (int i = 0; i + 1 < hex.size() && Inside(bank, page, offset + stored); i += 2) {
        bool ok = false;
        const uint value = hex.mid(i, 2).toUInt(&ok, 16);
        if (!ok)
            break;
        bytes_[Index(bank, page, offset + stored)] = char(value);
        ++stored;
    }
    return stored;
}

uint8_t PackImage::Byte(int bank, int page, int offset) const
{
    return Inside(bank, page, offset) ? uint8_t(bytes_[Index(bank, page, offset)]) : 0xFF;
}

void PackImage::Set_Byte(int bank, int page, int offset, uint8_t value)
{
    if (Inside(bank, page, offset))
        bytes_[Index(bank, page, offset)] = char(value);
}

} // namespace vex
