#pragma once
// The wire protocol of the analyzer, the small device on a serial port into
// which a memory pack is put.
//
// The protocol is plain ASCII in both directions. Its only framing is the
// words "START", "ENDOF" and "WRITE": no length, no checksum, no line ends,
// and writes are never acknowledged.
//
//   "NAMESENDOF"                       -> "STARTSIOENDOF"   who are you?
//   "CHECKENDOF"                       -> "STARTYESENDOF"   is a pack in?
//   "START" bb pp aaaa llll "ENDOF"    -> "START" hex "ENDOF"
//   "WRITE" aaaaaaaa vv "ENDOF"        -> nothing           one system-page byte
//
// bb, pp, aaaa and llll are bank, page, offset and count of a PackAddress in
// capital hexadecimal; a reply carries two hexadecimal characters a byte.
//
// The link is handed a port and only ever opens one through it: to scan the
// numbered ports for an analyzer, and to reopen the port after a reply
// didn't come, which is the one way of dropping what a late analyzer may
// still send. Everything blocks the calling thread; nothing else may use the
// port meanwhile.
//
// The link flag is the global G().Link_Type: 1 once a scan found an
// analyzer, 0 otherwise. The link itself never sets it (the caller does,
// from Find_Analyzer's result, through Apply_Link_Result), but the pack
// routines that need a connected analyzer refuse while it is 0.
#include "acquisition/PackLayout.h"
#include "platform/SerialPort.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>

namespace vex {

// Panel 4 of the status bar: "SIO" (the name the analyzer gives itself) for
// link flag 1, "ISA" for anything else.
QString Link_Panel4_Text(int16_t linkType);
// Panel 1 after a scan: "분석기 연결 완료" or "분석기와 연결되지 않았읍니다.".
QString Link_Status_Text(bool connected);
// What the connect button does with a scan's result: sets G().Link_Type to
// 1 or 0 and writes Link_Status_Text to panel 1 through Status_Text. Panel 4
// is the caller's: the reception dialog sets it to "SIO" on success only.
void Apply_Link_Result(bool found);

class AnalyzerLink {
public:
    // Milliseconds of a monotonic clock. The link measures its deadlines on
    // it; tests give the clock of their scripted port.
    using Clock = std::function<qint64()>;

    // A reply has 1.5 s to arrive in whole (once three polls of 500 ms).
    static constexpr int kReplyDeadlineMs = 1500;
    // A port has 1 s to name itself (once ten polls of 100 ms).
    static constexpr int kNameDeadlineMs = 1000;
    static constexpr int kFirstPort = 1;
    static constexpr int kLastPort = 6;

    explicit AnalyzerLink(AnalyzerPort& port, Clock clock = {});

    AnalyzerPort& Port() { return port_; }

    // Scans ports 1 to 6 in order: (re)opens each, sends "NAMESENDOF" and
    // waits up to 1 s for "STARTSIOENDOF" anywhere in what comes back.
    // True as soon as it is seen, with that port left open. False after port
    // 6, which stays open if it opened. A port that fails to open is simply
    // passed over; the scan itself never fails.
    bool Find_Analyzer();

    // The payload of the next reply: what stands between the first "START"
    // and the first "ENDOF" that follows it. Garbage in front of "START" is
    // skipped; "ENDOF" in front of "START" empties what was gathered and
    // waiting goes on. Returns as soon as a whole reply is in, at most after
    // 1.5 s; then, with no reply, the port is closed and reopened, which
    // drops whatever still comes, and the result is empty. "STARTENDOF" is an
    // empty payload too, but leaves the port as it is.
    // Nothing is cleared before a command is sent, so a reply left over
    // from an earlier command is taken for the reply to this one.
    QString New_Pack_Receive();

    // One pack byte as two characters, or empty. address is up to four
    // hexadecimal digits; bank and page are decimal digits ("14" is bank
    // 0E), turned into hexadecimal here: ("07E0", "14", "01") sends
    // "START0E0107E00001ENDOF". With the link flag at 0 nothing is sent and
    // the result is empty.
    QString New_Pack_SearchIO_Byte1(const QString& address, const QString& bank, const QString& page);

    // True when a pack is in the analyzer ("CHECKENDOF" answered "YES");
    // false at once with the link flag other than 1. On the way it reads the
    // pack's car code (Pack_Car_Code) from the first of three places that
    // holds four decimal digits other than "0000": 0E/01/07E0-07E1 (current
    // packs), 0E/00/0002-0003 (older), else 00/00/0002-0003 taken as it is.
    bool SIO_PackCheck();

    // The car code that SIO_PackCheck last read. The reception dialog sets
    // it to "0000" before a check.
    const QString& Pack_Car_Code() const { return packCarCode_; }
    void Set_Pack_Car_Code(const QString& code) { packCarCode_ = code; }

    // Sends message as it stands ("CHECKENDOF", a read command) and returns
    // the payload of the reply (New_Pack_Receive). Throws RunTimeError when
    // the message can't be sent (port closed); call it inside a Guarded body.
    QString Query(const QString& message);

    // Sends the read command of a pack location and returns the payload of
    // the reply, through Query. Doesn't look at the link flag: the pack
    // routines that call it have done so.
    QString Read(const PackAddress& at);
    // The same with the fields as hexadecimal texts, padded here: bank and
    // page with Pad2, offset and count with Pad4.
    QString Read(const QString& bank, const QString& page, const QString& offset, const QString& count);

    // Sends "WRITE" address Pad2(value) "ENDOF": one byte of the system page
    // at the address of eight hexadecimal digits. No reply is read. False
    // when the command could not be sent. Doesn't look at the link flag.
    bool New_Pack_WriteIO_Byte(const QString& address, const QString& value);

    // Command texts, as they go on the wire.
    static QString Read_Command(const PackAddress& at);
    static QString Read_Command(const QString& bank, const QString& page, const QString& offset,
                                const QString& count);
    static QString Write_Command(const QString& address, const QString& value);

private:
    // Sends text as Latin-1; throws RunTimeError when the port takes none.
    void Send(const QString& text);
    // Closes the port and opens the same number again.
    void Reopen();
    // "14" -> "0E": decimal text to Pad2 of Dec_Hex; throws on a text that
    // isn't a 16-bit number.
    static QString Dec_Text_To_Hex2(const QString& decimal);

    AnalyzerPort& port_;
    Clock clock_;
    QString packCarCode_;
};

} // namespace vex
