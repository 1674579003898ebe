#include "util/COrvUnitCnv.h"

#include <cmath>

bool COrvUnitCnv::SetUnit(int type, double factor, double offset, const QString& symbol,
                          const QString& name, const QString& description) {
    // A zero or non-finite factor would make FromDisplay divide by zero; keep the old unit.
    if (type < 0 || !std::isfinite(factor) || factor == 0.0 || !std::isfinite(offset))
        return false;
    Unit& unit = m_units[type];
    unit.factor = factor;
    unit.offset = offset;
    unit.symbol = symbol;
    unit.name = name;
    unit.description = description;
    return true;
}

double COrvUnitCnv::ToDisplay(int type, double stored) const {
    const auto it = m_units.find(type);
    if (it == m_units.end())
        return stored;
    return stored * it->second.factor + it->second.offset;
}

double COrvUnitCnv::FromDisplay(int type, double shown) const {
    const auto it = m_units.find(type);
    if (it == m_units.end())
        return shown;
    return (shown - it->second.offset) / it->second.factor;
}

double COrvUnitCnv::Factor(int type) const {
    const auto it = m_units.find(type);
    return it == m_units.end() ? 1.0 : it->second.factor;
}

double COrvUnitCnv::Offset(int type) const {
    const auto it = m_units.find(type);
    return it == m_units.end() ? 0.0 : it->second.offset;
}

QString COrvUnitCnv::Symbol(int type) const {
    const auto it = m_units.find(type);
    return it == m_units.end() ? QString() : it->second.symbol;
}

QString COrvUnitCnv::Name(int type) const {
    const auto it = m_units.find(type);
    return it == m_units.end() ? QString() : it->second.name;
}

QString COrvUnitCnv::Description(int type) const {
    const auto it = m_units.find(type);
    return it == m_units.end() ? QString() : it->second.description;
}

bool COrvUnitCnv::HasUnit(int type) const {
    return m_units.find(type) != m_units.end();
}

COrvUnitCnv& StaticFormats::GetUnitCnv() {
    static COrvUnitCnv converter;
    return converter;
}
