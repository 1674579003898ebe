#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The text side of batch conversion: what each column of a line holds, how fields are
// separated, how numbers and angles are read and how results are written. See
// docs/terrameter.md for the file format.
namespace BatchFormat {

// The longest line read; longer lines are refused with their number (memory stays flat).
constexpr std::size_t MaxLineBytes = 64 * 1024;

// Decimals written: grid coordinates and heights to 0.1 mm (of the system unit), angles
// to 1e-9 degree (0.1 mm on the ground).
constexpr int LengthDecimals = 4;
constexpr int AngleDecimals = 9;

enum class Role { Copy, Latitude, Longitude, Height, Easting, Northing, Z, Epoch };

// What each column of a line holds, left to right; columns beyond those named are copied.
struct ColumnSpec {
    std::vector<Role> roles;
    bool inverse = false; // grid coordinates in, WGS 84 out
    int first = -1;       // the first horizontal column (latitude or Easting side)
    int second = -1;      // the other horizontal column
    int height = -1;      // height or Z; -1: none (heights are 0, no Z is written)
    int epoch = -1;       // observation epoch; -1: none

    // "id,lat,lon,h[,epoch]": names separated by commas. lat, lon, h (latitude,
    // longitude, height) read WGS 84; e, n, z (easting, northing) read grid coordinates
    // (the inverse direction); epoch (time) is the observation epoch; id, name, point,
    // "-" and "skip" are copied. Empty text: "lat,lon,h", or "e,n,z" when inverse.
    static bool Parse(const QString& text, bool inverse, ColumnSpec& spec, QString& error);
    // The number of fields a data line needs.
    int RequiredFields() const;
    bool IsResult(int column) const {
        return column == first || column == second || column == height;
    }
};

// The separator between fields; Space means runs of blanks and tabs.
enum class Separator { Auto, Comma, Semicolon, Tab, Space };

bool ParseSeparator(const QString& text, Separator& separator);
// From the first line that holds data: tab, then semicolon, then comma, else blanks.
Separator DetectSeparator(std::string_view line);
char SeparatorChar(Separator separator);

// Splits a line (without its line end) into fields. Fields are trimmed of blanks; a field
// in double quotes keeps separators inside it ("" stands for one quote).
void SplitFields(std::string_view line, Separator separator, std::vector<std::string_view>& fields);
// The same, appending to fields; returns the number of fields of the line.
std::size_t AppendFields(std::string_view line, Separator separator,
                         std::vector<std::string_view>& fields);

// A plain decimal number ("+1.5", "-2e3"; with decimalComma also "1,5"); false for text,
// empty fields and anything not finite.
bool ReadNumber(std::string_view field, bool decimalComma, double& value);
// Decimal degrees or any angle text the calculator window reads (DMS, hemisphere letters).
bool ReadAngle(std::string_view field, bool decimalComma, double& value);

// The longitude rule: longitudes from -360 to 360 are accepted and brought into -180..180
// (so 0..360 east longitudes work); anything else is refused.
constexpr double LongitudeLimit = 360.0;
constexpr double LatitudeLimit = 90.0;
bool NormaliseLongitude(double& longitude);

// Appends value with a fixed number of decimals, exactly (no exponent, any magnitude) and
// without a sign when it shows as zero. False, appending nothing, when not finite.
bool AppendFixed(std::string& out, double value, int decimals);
// The longest text WriteFixed writes: 309 integer digits, a sign, a point and the decimals.
constexpr std::size_t MaxFixedChars = 400;
// The same, written at out (room for MaxFixedChars); returns the end of the text, or null
// when value is not finite.
char* WriteFixed(char* out, double value, int decimals);

// True for a line that holds column names rather than numbers: no coordinate column reads
// as a number or an angle.
bool LooksLikeHeader(const std::vector<std::string_view>& fields, const ColumnSpec& spec,
                     bool decimalComma);

} // namespace BatchFormat
