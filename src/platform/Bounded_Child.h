#pragma once
// Work on untrusted input that may never end: a library that loops on a
// damaged file can't be stopped from inside. The work runs in a child
// process of this one (a fork: it sees the caller's data as it stands) with
// a ceiling on its memory, a deadline and a ceiling on what it may write to
// its error stream (a looping reader tends to warn without end); its answer
// comes back as bytes. The caller's process is never at stake.
#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>

namespace vex {

struct Child_Limits {
    int seconds = 30;                   // wall time, then the child is killed
    qint64 extraBytes = qint64(512) << 20;  // address space beyond the caller's
    qint64 warningBytes = 64 << 10;     // written to stderr, then it is killed
};

// The bytes work returned in the child; nothing, with why in error, when
// the child died, ran out of memory, was too late or warned too much.
std::optional<QByteArray> Run_Bounded(const std::function<QByteArray()>& work, const Child_Limits& limits,
                                      QString* error = nullptr);

} // namespace vex
