#pragma once

#include <QString>

// The system the calculator opens when the command line names none (started from a desktop
// menu): the selection dialog on both databases as a chooser (edit flag off, so Edit and
// Remove are off; Add is hidden, since the calculator only reads the database). group and
// system preset the selection and receive the choice. False when the person cancels.
bool ChooseSystem(const QString& dllType, QString& group, QString& system);
