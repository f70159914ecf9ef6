#pragma once
// The memory pack day decoder: the bytes of a pack file (the three page
// records of Read.Vex) in, the repaired day out, with the list of what was
// repaired. It touches no file and no database: the car's speed limit and
// the random numbers come in as functions.
#include "acquisition/VexFiles.h"
#include "core/Pack_Day.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>

namespace vex {

struct Pack_Decoding {
    enum class Verdict {
        Decoded,    // day holds the repaired day
        Empty,      // the file holds no day page
        Check_Byte, // the second check byte refuses the page
        Erased,     // an erased page: nothing driven, nothing to store
        No_Key,     // codes or day that can't be a key after the repairs
    };
    Verdict verdict = Verdict::Decoded;
    Pack_Day day;
    // One line a repair, in the order they were made: "StartDay \"000000\" -> \"261015\"".
    QStringList repairs;
    // Why a page was refused; empty for a decoded or an erased page.
    QString refusal;
};

struct Pack_Decode_Inputs {
    // The car's speed limit in km/h by the pack's four-character car code.
    std::function<int(const QString& car4)> speedLimitOf;
    // A whole number from 0 to below bound, for an implausible count.
    std::function<int(int bound)> random;
};

// Decodes one pack day. The overspeed minutes are left 0: they count
// against the standards, which the store applies.
Pack_Decoding Decode_Pack_Day(const QByteArray& file, const Pack_Decode_Inputs& inputs);

// The day test of a pack day: bad when not numeric (digitsOnly: any
// character not a digit), "000000", a month above 12 or a day above 31.
bool Bad_Pack_Day(const QString& day, bool digitsOnly);
// A pack's car or driver code: four hexadecimal capitals.
bool Pack_Code(const QString& code);
// Why a day is no key of the store.
QString Key_Refusal(const QString& car, const QString& driver, const QString& day);

} // namespace vex
