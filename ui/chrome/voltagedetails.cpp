#include "ui/voltagedetails.h"

#include "ui_voltagedetails.h"

VoltageDetails::VoltageDetails(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::VoltageDetails>())
{
    ui->setupUi(this);
}

VoltageDetails::~VoltageDetails() = default;
