#pragma once

/// So many days from today it is from now on, for the whole process.
void turnCalendar(int days);
