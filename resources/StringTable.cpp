#include "resources/StringTable.h"

#include <QList>

#include <algorithm>
#include <iterator>

namespace {

struct Entry {
    int id;
    const char16_t* text;
};

// Sorted by id.
constexpr Entry kStrings[] = {
    {StrId::WizardCaption, u"Coordinate System Wizard"},
    {StrId::TitleNewSystem, u"New Coordinate System"},
    {StrId::TitleSelectSystem, u"Select Coordinate System"},
    {StrId::TitleEllipsoids, u"Ellipsoids"},
    {StrId::TitleDtf, u"Datum Transformation "},
    {StrId::TitleSelectDtf, u"Select Datum Transformation"},
    {StrId::TitleDtfParameters, u"Datum Transformation Parameters"},
    {StrId::TitleUnit, u"Unit"},
    {StrId::TitleProjection, u"Projection"},
    {StrId::TitleSelectProjection, u"Select Projection"},
    {StrId::TitlePrjParameters, u"Projection Parameters"},
    {StrId::TitleGeoidModel, u"Geoid Model"},
    {StrId::TitleSaveSystem, u"Save Coordinate System"},
    {StrId::TitleOverview, u"Coordinate System Overview"},
    {StrId::TitlePostCorrection, u"Post Correction"},
    {StrId::PageNumberOf, u" of "},

    {StrId::EnterNumber, u"Please enter a number."},
    {StrId::EnterInteger, u"Please enter an integer."},

    {StrId::InfoGroup, u"Group: "},
    {StrId::InfoSystem, u"System: "},
    {StrId::InfoMetricFactor, u"Metric Conversion Factor:"},
    {StrId::InfoDescription, u"Description: "},
    {StrId::DtfGroupFrom, u"Transformation from  "},
    {StrId::DtfGroupTo, u" to "},
    {StrId::RotationUnitName, u"Datum Transformation Rotation Units"},
    {StrId::DtfNameSuffix, u"-dtf"},
    {StrId::PrjNameSuffix, u"-Prj"},

    {StrId::TitleSelectSystemDlg, u"Select Coordinate System"},
    {StrId::TitleSelectUnit, u"Select Unit"},
    {StrId::TitleSelectEllipsoid, u"Select Ellipsoid"},
    {StrId::TitleSelectDtfDlg, u"Select Datum Transformation"},
    {StrId::TitleSelectPrjDlg, u"Select Projection"},
    {StrId::TitleCreateDtf, u"Create new datum transformation"},
    {StrId::TitleCreatePrj, u"Create New Projection"},
    {StrId::TitleNewUnit, u"New Unit"},
    {StrId::TitleSelectGeoidFile, u"Select Geoid Model File"},
    {StrId::TitleEditSystem, u"Edit Coordinate System"},
    {StrId::TitleHostWizard, u"Coordinate System"},
    {StrId::RootSystemDatabase, u"Coordinate System Database"},
    {StrId::RootUserDatabase, u"Coordinate User Database"},

    {StrId::NamePageInfo,
     u"If an existing coordinate system is used, the datum transformation parameters, the "
     u"projection parameters, the geoid corrections, and the post grid corrections can be "
     u"changed."},
    {StrId::NameEmpty, u"Please give a name for the new system."},
    {StrId::NameExists, u"The name already exists. Please give another name."},
    {StrId::NoEllipsoidSelection, u"No ellipsoid selection."},
    {StrId::DtfChoiceInfo,
     u"If the option \"Use existing datum transformation\" is selected the datum "
     u"transformation parameters can not be modified.\nIf an existing datum transformation "
     u"has to be modified, select the option \" New datum transformation\" with \" Based on "
     u"existing datum transformation\" checked."},
    {StrId::DtfNameProblemCaption, u"Datum Transformation Name Problem"},
    {StrId::NameExistsEnterNew, u"The name already exists, please enter a new name."},
    {StrId::DtfPredefinedChanged,
     u"A pre-defined Datum Transformation can not be changed. Enter a new name to save the "
     u"parameters as user-defined Datum Transformation."},
    {StrId::DtfUserDefinedChanged,
     u"Changes are made to a user-defined Datum Transformation. Press Yes to save the changes "
     u"and continue. Press No to enter a new name and save the parameters as a new Datum "
     u"Transformation."},
    {StrId::UnitPageInfo, u"The selected unit will be used for the projection parameters and "
                          u"therefore it becomes the system unit."},
    {StrId::PrjChoiceInfo,
     u"If the option \"Use existing projection\" is selected, the projection parameters can "
     u"not be modified.\nIf an existing projection has to be modified, select the option \" "
     u"New projection\" with \"Based on existing projection\" checked.\nThe projection that "
     u"can be selected or created will use the unit as selected in the unit page.\n"},
    {StrId::PrjUnitFixedGoBack,
     u"The selected projection unit is fixed as meters which is different from the definition "
     u"on unit page. Please go back to unit page and change the definition to meter."},
    {StrId::PrjUnitConvertQuestion,
     u"The selected projection unit is different from the definition on unit page.Click\"Yes\", "
     u"the projection unit will be converted to the unit defined on unit page. "},
    {StrId::PrjNameProblemCaption, u"Projection name problem"},
    {StrId::PrjPredefinedChanged, u"A pre-defined Projection can not be changed. Enter a new name "
                                  u"to save the parameters as a new Projection."},
    {StrId::PrjUserDefinedChanged,
     u"Changes are made to a user-defined Projection. Press Yes to save the changes and "
     u"continue. Press No to enter a new name and save the parameters as a new projection."},
    {StrId::PrjUnitFixedSelectAnother,
     u"The selected projection unit is fixed as meters which is different from the definition "
     u"on unit page. Please go back to unit page and change the definition to meter, or select "
     u"another projection."},
    {StrId::ScaleFactorTooSmall, u"The value of scale factor must be bigger than 0.8."},
    {StrId::GeoidPageInfo,
     u"A geoid model will calculate a local height from the satellite ellipsoid height.\nIf as "
     u"method a geoid model grid model is selected, a file of a geoid model grid model can be "
     u"selected.\nGeoid model grid model has to be created in the grid model editor in "
     u"advance."},
    {StrId::FilterQuasigeoid, u"Quasigeoid File (binary format)"},
    {StrId::FilterCanadianGeoid, u"Canadian geoid File (.byn format)"},
    {StrId::FilterTrimbleGeoid, u"Trimble geoid grid File (.ggf format)"},
    {StrId::FilterVorf, u"VORF grid File (.vrf format)"},
    {StrId::FilterDvr90, u"DRV90 geoid File (binary format)"},
    {StrId::FilterOsGeoid, u"Ordnance Survey Geoid Model File (.txt or .gri format)"},
    {StrId::FilterRdGeoid, u"RDANPTRANS2018 Geoid Model File (.gtx format)"},
    {StrId::FilterOsShift, u"Ordnance Survey Shift Model File (.txt format)"},
    {StrId::FilterRdShift, u"RDANPTRANS2018 Shift Model File (.gsb format)"},
    {StrId::GroupNameEmpty, u"Please give a group name."},
    {StrId::NameExistsGiveAnother, u"The name already exists, please give another name."},
    {StrId::SaveSystemFailed, u"The coordinate system could not be saved.\n%1"},
    {StrId::StartCalculatorFailed, u"Start terrameter failed"},
    {StrId::PostPageInfo,
     u"The Post Correction will be added to correct the calculated Easting, Northing and Z."},
    {StrId::RemoveSystemFailed,
     u"You can't remove the coordinate system, because it is also used by other projects or "
     u"defined in other coordinate systems."},
    {StrId::EllipsoidChangedQuestion, u"Since the ellipsoid is changed, click \"Yes\" the datum "
                                      u"transformation parameters will be changed too."},
    {StrId::UnitSelectFixedMeter,
     u"The selection can not be set because the projection unit is fixed as meter."},
    {StrId::UnitSelectConvertQuestion,
     u"The selected unit is different from projection unit. Click\"Yes\", the projection unit "
     u"will be converted to the selected unit. "},
    {StrId::UnitCreateFixedMeter,
     u"The created unit can not set to projection because the projection unit is fixed as "
     u"meter."},
    {StrId::UnitCreateConvertQuestion,
     u"The created unit is different from projection unit. Click\"Yes\", the projection unit "
     u"will be converted to the created unit. "},
    {StrId::PrjSelectFixedMeter,
     u"The selected projection unit is fixed as meters which is different from the unit "
     u"definition on right side. Please change the unit definition and select again."},
    {StrId::PrjSelectConvertQuestion,
     u"The selected projection unit is different from the definition on right side.Click\"Yes\", "
     u"the projection unit will be converted to the unit defined on right side."},
    {StrId::PrjSpecial, u"The selected projection is a special projection which can not be added "
                        u"to the coordinate system system, please set another projection"},
    {StrId::PrjNotImplemented, u"This projection is not implemented yet, please set another "
                               u"projection"},
    {StrId::EditorSharedChangeWarning,
     u"Changes to the datum transformation or the projection\nmight also affect other ORV "
     u"projects in which these are used.\nIf you don't want this, select Cancel and create a "
     u"new DTF or\nprojection based on the current one.\nOtherwise select OK."},
    {StrId::WarningCaption, u"Warning"},
    {StrId::DtfNameEmpty, u"Please set the new datum name"},
    {StrId::DtfNameExists, u"The datum already existed, please set another name."},
    {StrId::PrjNameEmpty, u"Please give a name for the new projection."},
    {StrId::PrjNameInUse, u"The name already is in using. Please give another name."},
    {StrId::MetersPerUnitLabel,
     u"Meters per unit ( example: 1 U.S. Survey Feet = 0.30480061 meter) "},
    {StrId::UnitStoreFailed, u"The new unit could not be stored.\n%1"},
};

constexpr bool ascending() {
    for (std::size_t i = 1; i < std::size(kStrings); ++i)
        if (kStrings[i - 1].id >= kStrings[i].id)
            return false;
    return true;
}
static_assert(ascending(), "string table entries must be sorted by id, each id once");

const Entry* find(int id) {
    const auto it = std::lower_bound(std::begin(kStrings), std::end(kStrings), id,
                                     [](const Entry& e, int key) { return e.id < key; });
    return it != std::end(kStrings) && it->id == id ? it : nullptr;
}

} // namespace

QString LoadOrvString(int id) {
    const Entry* entry = find(id);
    return entry ? QString::fromUtf16(entry->text) : QString();
}

bool HasOrvString(int id) {
    return find(id) != nullptr;
}

QList<int> OrvStringIds() {
    QList<int> ids;
    for (const Entry& entry : kStrings)
        ids << entry.id;
    return ids;
}
