#pragma once
// ThemedSplitter: a QSplitter whose handles are a one-pixel line in the theme's border colour,
// centred in the handle's width (the rest is the ground beneath, still a place to grab), instead
// of the style's grip. Follows theme changes, since the colour is read when painting.

#include <QSplitter>

namespace orwick {

class ThemedSplitter : public QSplitter {
    Q_OBJECT
public:
    explicit ThemedSplitter(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    QSplitterHandle* createHandle() override;
};

} // namespace orwick
