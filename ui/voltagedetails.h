#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class VoltageDetails;
}

/// Help: what each of the four bias voltages does, which value to start from, and two diagrams.
class VoltageDetails : public QDialog
{
    Q_OBJECT

public:
    explicit VoltageDetails(QWidget *parent = nullptr);
    ~VoltageDetails() override;

private:
    const std::unique_ptr<Ui::VoltageDetails> ui;
};
