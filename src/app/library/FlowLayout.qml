import QtQuick

/// Lays its items out in rows that wrap.
Flow {
    spacing: 8
}
