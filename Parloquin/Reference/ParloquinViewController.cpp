#include "Parloquin/Reference/ParloquinViewController.h"

ParloquinViewController::ParloquinViewController(QWidget *parent)
    : QWidget(parent)
{
}

ParloquinViewController::~ParloquinViewController() = default;
