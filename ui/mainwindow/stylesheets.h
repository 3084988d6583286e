#pragma once

/// Style sheets that change while the program runs. What never changes stands in the form.
namespace StyleSheets {

/// The whole application.
inline constexpr char application[] = "\n"
                                      "        QMainWindow#MainWindow {\n"
                                      "            background: transparent;\n"
                                      "        }\n"
                                      "    ";

/// `battery_color` at 20 % and above.
inline constexpr char batteryFull[] = "\n"
                                      "                QWidget{\n"
                                      "                    background:#3bb149;\n"
                                      "                    border: none;\n"
                                      "                }\n"
                                      "            ";

/// `battery_color` below 20 %.
inline constexpr char batteryLow[] = "\n"
                                     "                QWidget{\n"
                                     "                    background:#e60012;\n"
                                     "                    border: none;\n"
                                     "                }\n"
                                     "            ";

/// `label_fps` while no data comes though a block is owed.
inline constexpr char rateInterrupted[] = "color: #e60012; border: 1px solid #e60012;";

/// `pushButton_sample` while nothing runs; the form starts with the same text.
inline constexpr char playIdle[] = "QPushButton { \n"
                                   "\t        border-radius:5px;\n"
                                   "\t        margin:5px;\n"
                                   "        }\n"
                                   "        QPushButton:hover{\n"
                                   "\t        border-radius:5px;\n"
                                   "\t        margin:5px;\n"
                                   "\t        background:#9A7741;\n"
                                   "        }\n"
                                   "    ";

/// `pushButton_sample` after the last detector was pulled out.
inline constexpr char playRemoved[] = "QPushButton { \n"
                                      "\t                        border-radius:5px;\n"
                                      "\t                        margin:5px;\n"
                                      "                        }\n"
                                      "                        QPushButton:hover{\n"
                                      "\t                        border-radius:5px;\n"
                                      "\t                        margin:5px;\n"
                                      "\t                        background:#9A7741;\n"
                                      "                        }\n"
                                      "                    ";

/// `pushButton_sample` while the acquisition runs.
inline constexpr char playRunning[] = "QPushButton {\n"
                                      "            margin:5px;\n"
                                      "            background-color:rgb(208,61,79);\n"
                                      "            border-radius:5px\n"
                                      "        }\n"
                                      "        QPushButton:hover {\n"
                                      "            margin:5px;\n"
                                      "            background-color:rgb(235, 91, 106);\n"
                                      "            border-radius:5px\n"
                                      "        }\n"
                                      "    ";

/// `pushButton_sample` between the request to stop and the detector's halt.
inline constexpr char playStopping[] = "QPushButton {\n"
                                       "                border-radius:5px;\n"
                                       "                margin:5px;\n"
                                       "                background-color:#d3d3d3;\n"
                                       "            }\n"
                                       "            QPushButton:hover{\n"
                                       "                border-radius:5px;\n"
                                       "                margin:5px;\n"
                                       "                background-color:#d3d3d3;\n"
                                       "            }\n"
                                       "        ";

} // namespace StyleSheets
