// The store's tables. Names are unique by their folded form (names.h); a printer's and a key's id is never used twice,
// so a handle to something deleted can never mean something newer.
#pragma once

namespace winport::spooler
{

inline constexpr int kSchemaVersion = 1;

inline constexpr const char* kSchema = R"sql(
CREATE TABLE drivers(
    id              INTEGER PRIMARY KEY AUTOINCREMENT,
    name            TEXT NOT NULL,
    folded          TEXT NOT NULL UNIQUE,
    version         INTEGER NOT NULL,
    driver_file     TEXT NOT NULL,
    data_file       TEXT NOT NULL,
    config_file     TEXT NOT NULL,
    help_file       TEXT NOT NULL,
    monitor         TEXT NOT NULL,
    datatype        TEXT NOT NULL,
    date            INTEGER NOT NULL,
    driver_version  INTEGER NOT NULL,
    manufacturer    TEXT NOT NULL,
    url             TEXT NOT NULL,
    hardware_id     TEXT NOT NULL,
    provider        TEXT NOT NULL);
CREATE TABLE driver_lists(
    driver          INTEGER NOT NULL REFERENCES drivers(id) ON DELETE CASCADE,
    kind            INTEGER NOT NULL,
    position        INTEGER NOT NULL,
    text            TEXT NOT NULL,
    PRIMARY KEY(driver, kind, position)) WITHOUT ROWID;
CREATE TABLE printers(
    id              INTEGER PRIMARY KEY AUTOINCREMENT,
    name            TEXT NOT NULL,
    folded          TEXT NOT NULL UNIQUE,
    driver          INTEGER NOT NULL REFERENCES drivers(id),
    port            TEXT NOT NULL,
    share           TEXT NOT NULL,
    comment         TEXT NOT NULL,
    location        TEXT NOT NULL,
    separator_file  TEXT NOT NULL,
    print_processor TEXT NOT NULL,
    datatype        TEXT NOT NULL,
    parameters      TEXT NOT NULL,
    attributes      INTEGER NOT NULL,
    priority        INTEGER NOT NULL,
    default_priority INTEGER NOT NULL,
    start_time      INTEGER NOT NULL,
    until_time      INTEGER NOT NULL,
    devmode         BLOB NOT NULL);
CREATE TABLE printer_data(
    printer         INTEGER NOT NULL REFERENCES printers(id) ON DELETE CASCADE,
    folded_key      TEXT NOT NULL,
    folded_name     TEXT NOT NULL,
    name            TEXT NOT NULL,
    type            INTEGER NOT NULL,
    data            BLOB NOT NULL,
    PRIMARY KEY(printer, folded_key, folded_name)) WITHOUT ROWID;
CREATE TABLE forms(
    id              INTEGER PRIMARY KEY AUTOINCREMENT,
    name            TEXT NOT NULL UNIQUE,
    flags           INTEGER NOT NULL,
    width           INTEGER NOT NULL,
    height          INTEGER NOT NULL,
    area_left       INTEGER NOT NULL,
    area_top        INTEGER NOT NULL,
    area_right      INTEGER NOT NULL,
    area_bottom     INTEGER NOT NULL);
CREATE TABLE registry_keys(
    id              INTEGER PRIMARY KEY AUTOINCREMENT,
    parent          INTEGER REFERENCES registry_keys(id) ON DELETE CASCADE,
    name            TEXT NOT NULL,
    folded          TEXT NOT NULL,
    UNIQUE(parent, folded));
CREATE TABLE registry_values(
    key             INTEGER NOT NULL REFERENCES registry_keys(id) ON DELETE CASCADE,
    folded          TEXT NOT NULL,
    name            TEXT NOT NULL,
    type            INTEGER NOT NULL,
    data            BLOB NOT NULL,
    PRIMARY KEY(key, folded)) WITHOUT ROWID;
INSERT INTO registry_keys(id, parent, name, folded) VALUES
    (1, NULL, 'HKEY_CLASSES_ROOT', 'hkey_classes_root'),
    (2, NULL, 'HKEY_CURRENT_USER', 'hkey_current_user'),
    (3, NULL, 'HKEY_LOCAL_MACHINE', 'hkey_local_machine'),
    (4, NULL, 'HKEY_USERS', 'hkey_users');
)sql";

} // namespace winport::spooler
