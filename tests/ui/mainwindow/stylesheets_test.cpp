#include "ui/mainwindow/stylesheets.h"

#include <gtest/gtest.h>

// The texts to the blank, on one line each.

TEST(StyleSheets, the_application_makes_the_main_window_itself_transparent)
{
    EXPECT_STREQ(StyleSheets::application,
                 "\n        QMainWindow#MainWindow {\n            background: transparent;\n        }\n    ");
}

TEST(StyleSheets, the_battery_is_green_or_red)
{
    EXPECT_STREQ(StyleSheets::batteryFull,
                 "\n                QWidget{\n                    background:#3bb149;\n  "
                 "                  border: none;\n                }\n            ");
    EXPECT_STREQ(StyleSheets::batteryLow,
                 "\n                QWidget{\n                    background:#e60012;\n   "
                 "                 border: none;\n                }\n            ");
}

TEST(StyleSheets, the_running_play_button_is_red)
{
    EXPECT_STREQ(
        StyleSheets::playRunning,
        "QPushButton {\n            margin:5px;\n            background-color:rgb(208,61,79);\n            "
        "border-radius:5px\n        }\n        QPushButton:hover {\n            margin:5px;\n            "
        "background-color:rgb(235, 91, 106);\n            border-radius:5px\n        }\n    ");
}

TEST(StyleSheets, the_stopping_play_button_is_grey)
{
    EXPECT_STREQ(StyleSheets::playStopping,
                 "QPushButton {\n                border-radius:5px;\n                margin:5px;\n           "
                 "     background-color:#d3d3d3;\n            }\n            QPushButton:hover{\n            "
                 "    border-radius:5px;\n                margin:5px;\n                "
                 "background-color:#d3d3d3;\n            }\n        ");
}

TEST(StyleSheets, the_idle_play_button_is_plain)
{
    EXPECT_STREQ(StyleSheets::playIdle,
                 "QPushButton { \n\t        border-radius:5px;\n\t        margin:5px;\n        }\n        "
                 "QPushButton:hover{\n\t        border-radius:5px;\n\t        margin:5px;\n\t        "
                 "background:#9A7741;\n        }\n    ");
}

TEST(StyleSheets, the_play_button_after_a_removal_is_plain)
{
    EXPECT_STREQ(StyleSheets::playRemoved,
                 "QPushButton { \n\t                        border-radius:5px;\n\t                        "
                 "margin:5px;\n                        }\n                        QPushButton:hover{\n\t     "
                 "                   border-radius:5px;\n\t                        margin:5px;\n\t           "
                 "             background:#9A7741;\n                        }\n                    ");
}
