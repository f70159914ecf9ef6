#include "acquisition/AnalyzerLink.h"

#include "acquisition/Cls_IO.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/Pad.h"

#include <QElapsedTimer>
#include <memory>

namespace vex {

namespace {

// Handler codes of the link's procedures, in the Cls_IO block.
enum : int16_t {
    kErrNew_Pack_WriteIO_Byte = 1123,
    kErrNew_Pack_Receive = 1124,
    kErrNew_Pack_SearchIO_Byte1 = 1125,
    kErrSIO_PackCheck = 1126,
};

const QByteArray kStart = QByteArrayLiteral("START");
const QByteArray kEnd = QByteArrayLiteral("ENDOF");
const QByteArray kNameQuery = QByteArrayLiteral("NAMESENDOF");
const QByteArray kNameReply = QByteArrayLiteral("STARTSIOENDOF");
const QString kStartText = QStringLiteral("START");
const QString kEndText = QStringLiteral("ENDOF");
const QString kCheckQuery = QStringLiteral("CHECKENDOF");
const QString kPackPresent = QStringLiteral("YES");

// A car code that a pack generation really wrote: four decimal digits, not
// the "0000" of an unset one. Hexadecimal letters mean the place holds
// something else (an erased pack reads "FFFF").
bool Valid_Car_Code(const QString& code)
{
    if (code.size() != 4 || code == QLatin1String("0000"))
        return false;
    for (QChar c : code) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    return true;
}

} // namespace

QString Link_Panel4_Text(int16_t linkType)
{
    return linkType == 1 ? QStringLiteral("SIO") : QStringLiteral("ISA");
}

QString Link_Status_Text(bool connected)
{
    return connected ? QStringLiteral("분석기 연결 완료") : QStringLiteral("분석기와 연결되지 않았읍니다.");
}

void Apply_Link_Result(bool found)
{
    G().Link_Type = found ? 1 : 0;
    QString text = Link_Status_Text(found);
    Status_Text(text);
}

AnalyzerLink::AnalyzerLink(AnalyzerPort& port, Clock clock) : port_(port), clock_(std::move(clock))
{
    if (!clock_) {
        auto timer = std::make_shared<QElapsedTimer>();
        timer->start();
        clock_ = [timer] { return timer->elapsed(); };
    }
}

bool AnalyzerLink::Find_Analyzer()
{
    // A failure at any step only means this port isn't the analyzer's; the
    // scan goes on with the next one.
    for (int n = kFirstPort; n <= kLastPort; ++n) {
        if (port_.isOpen())
            port_.close();
        if (!port_.open(n))
            continue;
        port_.write(kNameQuery);

        QByteArray buffer;
        const qint64 deadline = clock_() + kNameDeadlineMs;
        for (;;) {
            buffer += port_.readAll();
            if (buffer.contains(kNameReply))
                return true;
            const qint64 left = deadline - clock_();
            if (left <= 0 || !port_.waitForReadyRead(int(left)))
                break;
        }
    }
    return false;
}

QString AnalyzerLink::New_Pack_Receive()
{
    QString payload;
    Guarded(kErrNew_Pack_Receive, [&] {
        QByteArray buffer;
        const qint64 deadline = clock_() + kReplyDeadlineMs;
        while (port_.isOpen()) {
            buffer += port_.readAll();
            if (!buffer.isEmpty()) {
                const qsizetype start = buffer.indexOf(kStart);
                const qsizetype end = buffer.indexOf(kEnd);
                if (start >= 0 && end > start) {
                    const qsizetype from = start + kStart.size();
                    payload = QString::fromLatin1(buffer.mid(from, end - from));
                    return;
                }
                // "ENDOF" before "START": the tail of something else. What
                // follows may still be a whole reply.
                if (start >= 0 && end >= 0)
                    buffer.clear();
            }
            const qint64 left = deadline - clock_();
            if (left <= 0 || !port_.waitForReadyRead(int(left)))
                break;
        }
        // No reply in time. Reopening drops whatever the analyzer still
        // sends of it, so that it can't pass for the next command's reply.
        Reopen();
    });
    return payload;
}

QString AnalyzerLink::New_Pack_SearchIO_Byte1(const QString& address, const QString& bank, const QString& page)
{
    QString result;
    if (G().Link_Type == 0)
        return result;
    Guarded(kErrNew_Pack_SearchIO_Byte1, [&] {
        result = Query(kStartText + Dec_Text_To_Hex2(bank) + Dec_Text_To_Hex2(page) + Pad4(address)
                       + QStringLiteral("0001") + kEndText);
    });
    return result;
}

bool AnalyzerLink::SIO_PackCheck()
{
    bool present = false;
    if (G().Link_Type != 1)
        return present;
    Guarded(kErrSIO_PackCheck, [&] {
        if (Query(kCheckQuery) != kPackPresent)
            return;

        // Three generations of pack keep the car code in three places.
        auto codeAt = [this](const QString& high, const QString& low, const QString& bank, const QString& page) {
            // High byte first, in two statements: the operands of + may be
            // evaluated in either order.
            const QString first = New_Pack_SearchIO_Byte1(high, bank, page);
            return first + New_Pack_SearchIO_Byte1(low, bank, page);
        };
        QString code = codeAt(QStringLiteral("07E0"), QStringLiteral("07E1"), QStringLiteral("14"), QStringLiteral("01"));
        if (!Valid_Car_Code(code))
            code = codeAt(QStringLiteral("0002"), QStringLiteral("0003"), QStringLiteral("14"), QStringLiteral("0"));
        if (!Valid_Car_Code(code))
            code = codeAt(QStringLiteral("0002"), QStringLiteral("0003"), QStringLiteral("0"), QStringLiteral("0"));
        packCarCode_ = code;
        present = true;
    });
    return present;
}

QString AnalyzerLink::Query(const QString& message)
{
    Send(message);
    return New_Pack_Receive();
}

QString AnalyzerLink::Read(const PackAddress& at)
{
    return Query(Read_Command(at));
}

QString AnalyzerLink::Read(const QString& bank, const QString& page, const QString& offset, const QString& count)
{
    return Query(Read_Command(bank, page, offset, count));
}

bool AnalyzerLink::New_Pack_WriteIO_Byte(const QString& address, const QString& value)
{
    return Guarded(kErrNew_Pack_WriteIO_Byte, [&] { Send(Write_Command(address, value)); });
}

QString AnalyzerLink::Read_Command(const PackAddress& at)
{
    return kStartText + at.text() + kEndText;
}

QString AnalyzerLink::Read_Command(const QString& bank, const QString& page, const QString& offset,
                                   const QString& count)
{
    return kStartText + Pad2(bank) + Pad2(page) + Pad4(offset) + Pad4(count) + kEndText;
}

QString AnalyzerLink::Write_Command(const QString& address, const QString& value)
{
    return QStringLiteral("WRITE") + address + Pad2(value) + kEndText;
}

void AnalyzerLink::Send(const QString& text)
{
    if (!port_.isOpen())
        throw RunTimeError(QStringLiteral("port not open"));
    if (!port_.write(text.toLatin1()))
        throw RunTimeError(QStringLiteral("cannot send \"%1\" on port %2").arg(text).arg(port_.portNumber()));
}

void AnalyzerLink::Reopen()
{
    const int n = port_.portNumber();
    port_.close();
    if (n > 0 && !port_.open(n))
        throw RunTimeError(QStringLiteral("cannot reopen port %1").arg(n));
}

QString AnalyzerLink::Dec_Text_To_Hex2(const QString& decimal)
{
    bool ok = false;
    const int value = decimal.toInt(&ok, 10);
    if (!ok || value < INT16_MIN || value > INT16_MAX)
        throw RunTimeError(QStringLiteral("not a 16-bit number: \"%1\"").arg(decimal));
    return Pad2(Cls_IO::Dec_Hex(int16_t(value)));
}

} // namespace vex
