#pragma once

class QWidget;

// Widgets for the guide "An Hour in a Panel", without and with the class that each picture is about. The caller owns
// them. If something must be on the screen first, the function prepare...() of the same picture does it.
QWidget* namesOfParts();
QWidget* typing();
void prepareTyping(QWidget* picture);
QWidget* acts();
void prepareActs(QWidget* picture);
QWidget* twoPanels(const char* hosted); // caption of the second one
void prepareSearch(QWidget* picture);
void prepareStates(QWidget* picture);
void prepareColumns(QWidget* picture);
void preparePanels(QWidget* picture);
QWidget* colours();
QWidget* choices();
void prepareChoices(QWidget* picture);
QWidget* views();
void prepareViews(QWidget* picture);
