#pragma once

#include <QString>

// Ids of the string table: every message, caption, explanatory text and page title the
// dialogs show lives once in StringTable.cpp and is looked up by its id. Ids are stable;
// new texts take new ids.
namespace StrId {
enum : int {
    // wizard sheet
    WizardCaption = 15000,         // "Coordinate System Wizard"
    TitleNewSystem = 15001,        // page titles, WIZPage0 ..
    TitleSelectSystem = 15002,     //
    TitleEllipsoids = 15003,       //
    TitleDtf = 15004,              // (with its trailing blank)
    TitleSelectDtf = 15005,        //
    TitleDtfParameters = 15006,    //
    TitleUnit = 15007,             //
    TitleProjection = 15008,       //
    TitleSelectProjection = 15009, //
    TitlePrjParameters = 15010,    //
    TitleGeoidModel = 15011,       //
    TitleSaveSystem = 15012,       //
    TitleOverview = 15013,         //
    TitlePostCorrection = 15014,   // .. WIZPage13
    PageNumberOf = 15015,          // " of "

    // platform: data exchange
    EnterNumber = 15050,  // "Please enter a number."
    EnterInteger = 15051, // "Please enter an integer."

    // information texts
    InfoGroup = 15100,        // "Group: "
    InfoSystem = 15101,       // "System: "
    InfoMetricFactor = 15102, // "Metric Conversion Factor:"
    InfoDescription = 15103,  // "Description: "
    DtfGroupFrom = 15104,     // "Transformation from  "
    DtfGroupTo = 15105,       // " to "
    RotationUnitName = 15106, // "Datum Transformation Rotation Units"
    DtfNameSuffix = 15107,    // "-dtf"
    PrjNameSuffix = 15108,    // "-Prj"

    // dialog titles and tree roots
    TitleSelectSystemDlg = 15200, // "Select Coordinate System"
    TitleSelectUnit = 15201,      // "Select Unit"
    TitleSelectEllipsoid = 15202, // "Select Ellipsoid"
    TitleSelectDtfDlg = 15203,    // "Select Datum Transformation"
    TitleSelectPrjDlg = 15204,    // "Select Projection"
    TitleCreateDtf = 15205,       // "Create new datum transformation"
    TitleCreatePrj = 15206,       // "Create New Projection"
    TitleNewUnit = 15207,         // "New Unit"
    TitleSelectGeoidFile = 15208, // "Select Geoid Model File"
    TitleEditSystem = 15209,      // "Edit Coordinate System"
    TitleHostWizard = 15210,      // "Coordinate System" (the wizard the host opens)
    RootSystemDatabase = 15211,   // "Coordinate System Database"
    RootUserDatabase = 15212,     // "Coordinate User Database"

    // name page
    NamePageInfo = 15801,
    NameEmpty = 15802,
    NameExists = 15803,
    // ellipsoid page
    NoEllipsoidSelection = 15810,
    // datum transformation pages
    DtfChoiceInfo = 15820,
    DtfNameProblemCaption = 15830,
    NameExistsEnterNew = 15831,
    DtfPredefinedChanged = 15832,
    DtfUserDefinedChanged = 15833,
    // unit page
    UnitPageInfo = 15840,
    // projection pages
    PrjChoiceInfo = 15850,
    PrjUnitFixedGoBack = 15860,
    PrjUnitConvertQuestion = 15861,
    PrjNameProblemCaption = 15870,
    PrjPredefinedChanged = 15871,
    PrjUserDefinedChanged = 15872,
    PrjUnitFixedSelectAnother = 15874,
    ScaleFactorTooSmall = 15875,
    // geoid model page and file filters
    GeoidPageInfo = 15880,
    FilterQuasigeoid = 15881,
    FilterCanadianGeoid = 15882,
    FilterTrimbleGeoid = 15883,
    FilterVorf = 15884,
    FilterDvr90 = 15885,
    FilterOsGeoid = 15886,
    FilterRdGeoid = 15887,
    FilterOsShift = 15888,
    FilterRdShift = 15889,
    // save page
    GroupNameEmpty = 15890,
    NameExistsGiveAnother = 15891,
    // overview page
    SaveSystemFailed = 15894, // %1: the database's reason
    StartCalculatorFailed = 15895,
    // post correction page
    PostPageInfo = 15896,
    // selection dialog
    RemoveSystemFailed = 15905,
    // editor
    EllipsoidChangedQuestion = 15910,
    UnitSelectFixedMeter = 15920,
    UnitSelectConvertQuestion = 15921,
    UnitCreateFixedMeter = 15922,
    UnitCreateConvertQuestion = 15923,
    PrjSelectFixedMeter = 15924,
    PrjSelectConvertQuestion = 15925,
    PrjSpecial = 15926,
    PrjNotImplemented = 15927,
    EditorSharedChangeWarning = 15930,
    WarningCaption = 15931,
    // naming dialogs
    DtfNameEmpty = 15940,
    DtfNameExists = 15941,
    PrjNameEmpty = 15942,
    PrjNameInUse = 15943,
    MetersPerUnitLabel = 15944,
    UnitStoreFailed = 15945, // %1: the database's reason
};
} // namespace StrId

// The text of an id; the empty string for an id the table does not hold.
QString LoadOrvString(int id);
bool HasOrvString(int id);
// Every id of the table, ascending.
QList<int> OrvStringIds();
