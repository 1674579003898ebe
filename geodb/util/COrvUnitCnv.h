#pragma once

#include <QString>

#include <map>

// The process's unit converter: per unit category a factor and an offset between the
// shown value and the stored value (shown = stored * factor + offset), a symbol and names.
// Category 28 "Datum Transformation Rotation Units" carries the rotation sign +1/-1 of the
// datum transformation method being shown.
class COrvUnitCnv {
public:
    static constexpr int RotationCategory = 28;

    // type: unit category (0 or more); factor, offset; symbol; name; description. False,
    // keeping the category as it was, for a negative type, a zero or non-finite factor or a
    // non-finite offset.
    bool SetUnit(int type, double factor, double offset, const QString& symbol, const QString& name,
                 const QString& description = QString());

    // stored -> shown and back for a category (identity for an unknown category).
    double ToDisplay(int type, double stored) const;
    double FromDisplay(int type, double shown) const;
    // Unknown categories: factor 1, offset 0, empty texts.
    double Factor(int type) const;
    double Offset(int type) const;
    QString Symbol(int type) const;
    QString Name(int type) const;
    QString Description(int type) const;
    bool HasUnit(int type) const;

private:
    struct Unit {
        double factor = 1.0;
        double offset = 0.0;
        QString symbol, name, description;
    };
    std::map<int, Unit> m_units;
};

// Owner of the process-wide converter that the dialogs configure and read.
class StaticFormats {
public:
    static COrvUnitCnv& GetUnitCnv();
};
