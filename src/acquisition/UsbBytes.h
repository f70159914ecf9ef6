#pragma once
// Reading the raw bytes of USB recorder files: a bounds-checked view over a
// block read in one piece, and the judgements every decoder makes on a byte
// (is it two decimal digits as the recorder writes its stamps and metres).
#include <QByteArray>
#include <QString>
#include <cstdint>

namespace vex {

// Handler codes: every byte of these files passes through Hex2; the hour
// merge and the summary rebuild have codes of their own.
inline constexpr int16_t kErrUsb_File_Read = 1140;
inline constexpr int16_t kErrDd1_File_Read = 1141;
inline constexpr int16_t kErrHex2 = 1142;

// Files are read 1 MiB at a time, a whole number of records of either model.
inline constexpr qint64 kUsbChunk = 1 << 20;

class Byte_View {
public:
    explicit Byte_View(const QByteArray& bytes)
        : p_(reinterpret_cast<const uint8_t*>(bytes.constData())), n_(bytes.size())
    {
    }
    qint64 Size() const { return n_; }
    // True when len bytes from at lie inside the block.
    bool Fits(qint64 at, qint64 len) const { return at >= 0 && len >= 0 && at <= n_ && len <= n_ - at; }
    // The byte at; 0xFF (erased) outside the block, so that a read past the
    // end sees free space and never memory that isn't there.
    uint8_t operator[](qint64 at) const { return at >= 0 && at < n_ ? p_[at] : uint8_t(0xFF); }
    const uint8_t* Data(qint64 at) const { return p_ + at; }
    // True when each of n bytes prints as two decimal digits.
    bool Digits(qint64 at, int n) const
    {
        if (!Fits(at, n))
            return false;
        for (int i = 0; i < n; ++i)
            if ((p_[at + i] >> 4) > 9 || (p_[at + i] & 0xF) > 9)
                return false;
        return true;
    }
    // The value of the byte's two decimal digits (only after Digits).
    int Bcd(qint64 at) const { return ((*this)[at] >> 4) * 10 + ((*this)[at] & 0xF); }
    // n bytes as 2n digits (only after Digits).
    QString Digit_Text(qint64 at, int n) const
    {
        QString text(2 * n, Qt::Uninitialized);
        for (int i = 0; i < n; ++i) {
            text[2 * i] = QLatin1Char(char('0' + ((*this)[at + i] >> 4)));
            text[2 * i + 1] = QLatin1Char(char('0' + ((*this)[at + i] & 0xF)));
        }
        return text;
    }

private:
    const uint8_t* p_;
    qint64 n_;
};

} // namespace vex
