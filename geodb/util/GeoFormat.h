#pragma once

#include <QString>

// Latitude and longitude texts.
//
// FormatGeogs(value, format, decimals, kind, out, fixedWidth, hemisphereLetter):
//   value     decimal degrees (south and west negative)
//   format    0 decimal degrees, 1 degrees and decimal minutes, 7 degrees, minutes and
//             decimal seconds; any other value is refused
//   decimals  decimals of the last component (0..9; 0 writes no decimal point)
//   kind      10 latitude-like (|value| <= 90, letters N/S, 2 degree digits),
//             11 longitude-like (|value| <= 180 after normalising to -180..180, letters
//             E/W, 3 degree digits; values from -360 to 360 are normalised, larger ones
//             refused); any other kind is refused
//   fixedWidth        pad degrees, minutes and seconds with leading zeros
//   hemisphereLetter  end with N/S or E/W instead of a leading '-' for negatives
// Format 7, 7 decimals, kind 10, both flags: 52°30'15.1234567"N  (longitude: 003°...W).
// Format 1: 52°30.2520576'N; format 0: 52.5042010°N.
// Rounding carries into minutes and degrees (59.99999999" never shows as 60"). A value that
// rounds to zero shows without '-' and with N or E.
// Returns false, leaving out unchanged, for a value that is not finite or out of range.
bool FormatGeogs(double value, unsigned format, int decimals, int kind, QString& out,
                 bool fixedWidth = true, bool hemisphereLetter = true);

// Parses any text FormatGeogs writes, and the common hand-typed forms: decimal degrees
// ("-3.5", "3.5W"), "52 30 15.5 N", "52:30:15.5", "52°30'N", with an optional leading sign or
// trailing N/S/E/W (both together are refused), comma or point as decimal separator and the
// placeholder '_' of masked edits treated as a missing digit only when nothing else is
// missing: placeholders may stand at either end of a number's digits ("_5", "15.12__"), not
// between digits, and every number must keep at least one digit. Only the last number may
// have decimals, each sign must stand in its place (° after degrees, ' after minutes, " or ''
// after seconds). Minutes and seconds must lie below 60; the angle may reach 90 with N/S,
// 180 with E/W and 360 otherwise. Returns false, leaving out unchanged, for any text that is
// not an angle (texts longer than 128 characters included); it never crashes on any input
// and never gives -0.
bool StringToGeo(const QString& text, double& out);
