#pragma once
// A day (1,440 minutes) and an hour (3,600 seconds) of one car and driver on
// the graph canvas: the per-view state (where the picture goes, the zoom
// window), the mapping of a minute or second and a value to a point, the
// decoded series, the empty frame and the plot. The searches (Day_Search.cpp)
// put the stored trip and the hour of second data here.
//
// Series arrays are 1-based, k = 1..1440 (1..3600), as the stored cells:
// element k holds clock minute k-1 of the day (second k-1 of the hour), the
// minute that the second arrays' elements 60(k-1) to 60(k-1)+59 make and
// that events name by their time. Clock minute (second) t is drawn at X(t),
// its state over the column from X(t) to X(t+1), and the cursor at X(t)
// shows time t and reads element t+1. Element 0 is always 0.
#include "analysis/Graph_Geometry.h"
#include "core/Hour_Seconds.h"
#include "core/Stored_Trip.h"

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

namespace vex {

class Cls_DB;
class Graph_Surface;

// One section of a day: driving, or a stop longer than the stop threshold.
struct Day_Section {
    QString Start;              // HH:MM
    QString End;                // HH:MM, where the next section starts
    int16_t Start_Minute = 0;   // minute of the day
    int16_t End_Minute = 0;
    QString Length;             // HH:MM
    QString Kind;               // "운행" or "비운행"
    double Distance = 0;        // km driven within the section
};

inline const QString kDriving = QStringLiteral("운행");
inline const QString kNotDriving = QStringLiteral("비운행");

class Operation_Graph {
public:
    explicit Operation_Graph(Cls_DB& db);
    Cls_DB& DB() { return db_; }

    // ---- Per-view state.
    int16_t Out_Direction = 0; // 0 window, 1 lower part of a page, 2 page of its own
    int16_t Zoom_Type = 24;    // day: hours shown (1, 2, 6, 12, 24); hour: minutes (1, 2, 15, 30, 60)
    int16_t Zoom_Time = 0;     // first hour (minute) of the window
    int16_t Zoom_ETime = 24;   // hour (minute) where the window ends
    float Current_Point = 0;   // X of the first plotted column of the day, 0 when nothing was drawn
    float Current_Point360 = 0;
    // A zoom window of zoom units starting at first, moved back as far as it
    // must to lie inside the day (span 24 hours) or the hour (span 60 minutes).
    void Set_Zoom_Window(int16_t zoom, int first, int span);

    // The geometry of a surface at this Out_Direction (Graph_Geometry.h).
    void Graph_Init(const Graph_Surface& surface) const;
    void Graph_Init_360(const Graph_Surface& surface) const;

    // ---- Mapping. The window check lies with the caller: X is not clipped.
    float Make_X(float minute) const;
    float Make_X_D(float minute) const; // the copy the distance line uses
    float Make_XO(float minute, int16_t zoom) const;
    float Make_X360(float second) const;
    float Make_XO360(float second, int16_t zoom) const;
    float Make_XO360s(float minutes) const;
    float Make_Y(float speed) const;
    float Make_Y360(float speed) const;
    float Make_Y_D(float km) const;
    float Make_Y_R(float sample) const;  // RPM sample in units of 40 RPM
    float Make_Y_R2(float sample) const; // the same in the second RPM band

    // ---- Series. DB_1440_DB decodes the three series of Trip, finds the
    // drawn range and sums the day's sections; DB_3600_DB decodes the two of
    // Hour. Bad cells count 0 and are written to the log.
    void DB_1440_DB();
    void DB_3600_DB();
    int16_t Speed_Search(int k) const;
    int16_t RPM_Search(int k) const;
    float Distance_Search(int k) const; // cumulative km
    int16_t Speed_Search360(int k) const;
    int16_t RPM_Search360(int k) const;
    int16_t Second_Search360(int k) const; // the lower RPM band: the engine byte as stored
    // True when the car has an engine factor, so its RPM can be drawn.
    bool Has_Engine_Factor() const { return Engine_Factor > 0; }
    // Points of the drawn range, 0 and 0 when the series hold nothing.
    int First_Point() const { return first_; }
    int Last_Point() const { return last_; }
    int First_Point360() const { return first360_; }
    int Last_Point360() const { return last360_; }
    // S_D1.D_F5 of the car: an RPM cell times this factor is the plotted
    // sample; 0 when the car's register row leaves it empty.
    float Engine_Factor = 4.25f;

    // Sums of the section walk of the last DB_1440_DB, in minutes.
    int Sum_DriveTime = 0;
    int Sum_BDriveTime = 0;
    int Total_Time = 0;

    // ---- Drawing.
    void Picture_Base_Draw(Graph_Surface& surface);
    void Picture_Base_Draw_360(Graph_Surface& surface);
    // The plot of the decoded day (hour) over a frame just drawn; ends with
    // the geometry computed once more for the surface.
    void Plot_Day(Graph_Surface& surface);
    void Plot_Hour(Graph_Surface& surface);
    // Geometry, frame and plot in one.
    void Draw_Day(Graph_Surface& surface);
    void Draw_Hour(Graph_Surface& surface);

    // ---- The read side (Day_Search.cpp).
    // The trip the last search found (figures and series), blank when none.
    Stored_Trip Trip;
    // The hour of second data the last hour search read.
    Hour_Seconds Hour;
    // Loads the trip of car + driver + day into Trip, decodes it and, with a
    // surface, draws it. False when D_D1 has no row.
    bool DB_Search_Data(Graph_Surface* surface, const QString& car, const QString& driver, const QString& day);
    // The trip on or after (key 33) or on or before (key 34) day; Trip is
    // blanked first and stays blank when there is none.
    bool DB_Search_Data_Move_Date(const QString& car, const QString& driver, const QString& day,
                                  Graph_Surface* surface, int keyCode);
    // The section list of a stored day.
    void DB_Search_Data2(Graph_Surface* surface, const QString& car, const QString& driver, const QString& day);
    std::vector<Day_Section> Sections;
    // One hour of the day file (Cls_DB::DB_Search_SecData) into Hour, decoded and,
    // with a surface, drawn. hour "00" or empty finds the first hour with
    // data. The file read, or empty text when the day has none.
    QString DB_Search_SecData2(Graph_Surface* surface, const QString& car, const QString& driver,
                               const QString& day, QString& hour);
    // The nearest hour before (step -1) or after (step 1) that holds data
    // in the day file, or -1.
    int Neighbour_Hour(const QString& car, const QString& driver, const QString& day, int hour, int step) const;

    // The section walk over a speed array of points 0..1440.
    static std::vector<Day_Section> Walk_Sections(const std::array<int16_t, 1441>& speed,
                                                  const std::array<float, 1441>& distance, int stopMinutes);

private:
    float X_Of(float units, int perDay, int16_t zoom, int16_t errCode) const;
    void Frame(Graph_Surface& s, bool hour);
    void Draw_Ticks(Graph_Surface& s, bool hour);
    void Draw_Grid(Graph_Surface& s, bool hour);
    void Plot(Graph_Surface& s, bool hour);

    Cls_DB& db_;
    std::array<int16_t, 1441> speed_{};
    std::array<int16_t, 1441> rpm_{};
    std::array<int16_t, 1441> engine_{}; // the engine bytes as stored: above 0 while it runs
    std::array<float, 1441> distance_{};
    std::array<int16_t, 3601> speed360_{};
    std::array<int16_t, 3601> rpm360_{};
    std::array<int16_t, 3601> second360_{};
    int first_ = 0, last_ = 0, first360_ = 0, last360_ = 0;
};

// Minute speed cells (hexadecimal) into points 1..1440, a cell of 255 and
// more counting 0; minute distance cells (tenths of a km) into the
// cumulative km of each point. Bad cells count 0 and go to the log under
// errCode.
void Decode_Minute_Speed(const QString& series, std::array<int16_t, 1441>& speed, int16_t errCode);
void Decode_Minute_Distance(const QString& series, std::array<float, 1441>& cumulative, int16_t errCode);

// "비운행으로 간주 하는 시간 값": minutes of standing that end a driving section.
int16_t Stop_Threshold();

// The minutes of the day that lie in stops longer than the stop threshold
// between two driven minutes of a minute speed series (2,880 characters).
int16_t UnH_Time(const QString& series);

} // namespace vex
