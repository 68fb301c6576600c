#pragma once

#include <QWidget>

class QLabel;

/// The window shown while the program logs on and fills its tree: the
/// product's picture, its name and version, and nothing that reacts.
class frmSplash : public QWidget {
    Q_OBJECT

public:
    explicit frmSplash(QWidget *parent = nullptr);

    void Form_Load();

private:
    QLabel *lblVersion = nullptr;
};
