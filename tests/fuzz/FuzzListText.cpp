// List texts split into items (COrvString), edited item by item and joined again.
#include "FuzzInput.h"

#include "util/COrvString.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3)
        return 0;
    const bool trim = data[0] & 1;
    const bool skipEmpty = data[0] & 2;
    const int index = data[1];
    const QString all = FuzzInput::Text(data + 2, size - 2);
    if (all.isEmpty())
        return 0;
    const QChar separator = all[0];
    const QString text = all.mid(1);

    COrvString list(text, separator, trim, skipEmpty);
    if (!trim && !skipEmpty)
        FuzzInput::Check(list.GetString() == text, "splitting and joining changes the text");
    const int size0 = list.Size();
    FuzzInput::Check(size0 >= 0, "negative size");
    int position = -2;
    const bool found = list.HasSubString(list[index % (size0 + 1)], position);
    FuzzInput::Check(!found || (position >= 0 && position < size0), "position outside the list");
    COrvString copy(list);
    copy[index - 128] = QStringLiteral("x"); // indexes outside the list change nothing
    FuzzInput::Check(copy.Size() == size0, "writing outside the list changed it");
    const bool set = copy.SetItem(index % (size0 + 2), text.left(3));
    FuzzInput::Check(set == (index % (size0 + 2) < size0), "SetItem answers wrongly");
    copy.Erase(index % 7 - 2, index % 5 - 1);
    FuzzInput::Check(copy.Size() <= size0, "Erase made the list longer");
    copy.GetString();
    return 0;
}
