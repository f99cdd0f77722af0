-- SPDX-License-Identifier: MIT
-- A store of version 1 as it is out there. Never to be changed: newer programs must bring it up to date.
PRAGMA page_size=8192;
BEGIN;
PRAGMA application_id=1332896333;
PRAGMA user_version=1;
CREATE TABLE model_groups(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE, model_count INTEGER NOT NULL DEFAULT 0,
    version INTEGER NOT NULL DEFAULT 0) STRICT;
CREATE TABLE blobs(id INTEGER PRIMARY KEY AUTOINCREMENT, sha256 BLOB UNIQUE CHECK(length(sha256) = 32), size INTEGER NOT NULL, stored INTEGER NOT NULL,
    codec INTEGER NOT NULL, touched INTEGER NOT NULL) STRICT;
CREATE TABLE blob_parts(id INTEGER PRIMARY KEY AUTOINCREMENT, blob INTEGER NOT NULL REFERENCES blobs(id) ON DELETE CASCADE, pos INTEGER NOT NULL,
    data BLOB NOT NULL, UNIQUE(blob, pos)) STRICT;
CREATE TABLE models(key INTEGER PRIMARY KEY CHECK(key BETWEEN 0 AND 4294967295),
    group_id INTEGER NOT NULL REFERENCES model_groups(id), name TEXT NOT NULL, code TEXT NOT NULL, note TEXT NOT NULL,
    blob INTEGER NOT NULL REFERENCES blobs(id), preview INTEGER REFERENCES blobs(id), created INTEGER NOT NULL) STRICT;
CREATE TABLE textures(model_key INTEGER NOT NULL REFERENCES models(key) ON DELETE CASCADE, pos INTEGER NOT NULL,
    name TEXT NOT NULL, blob INTEGER NOT NULL REFERENCES blobs(id), PRIMARY KEY(model_key, pos)) STRICT, WITHOUT ROWID;
CREATE TABLE tokens(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE, hash BLOB NOT NULL CHECK(length(hash) = 32),
    rights INTEGER NOT NULL, created INTEGER NOT NULL) STRICT;
CREATE INDEX models_in_group ON models(group_id, name, key);
CREATE INDEX models_by_blob ON models(blob);
CREATE INDEX models_by_preview ON models(preview) WHERE preview IS NOT NULL;
CREATE INDEX textures_by_blob ON textures(blob);
CREATE TRIGGER model_added AFTER INSERT ON models BEGIN
    UPDATE model_groups SET model_count = model_count + 1, version = version + 1 WHERE id = new.group_id; END;
CREATE TRIGGER model_removed AFTER DELETE ON models BEGIN
    UPDATE model_groups SET model_count = model_count - 1, version = version + 1 WHERE id = old.group_id; END;
CREATE TRIGGER model_changed AFTER UPDATE OF preview ON models BEGIN
    UPDATE model_groups SET version = version + 1 WHERE id = new.group_id; END;
INSERT INTO model_groups(name) VALUES('Chairs'), ('Empty');
INSERT INTO blobs(sha256, size, stored, codec, touched) VALUES(X'ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad', 3, 3, 0, 1), (X'2cea274d0bedc39ec4ab6ba9e59ec889e3ed6fb56a1cf088a64d9b383378dc97', 7, 7, 0, 1);
INSERT INTO blob_parts(blob, pos, data) VALUES(1, 0, X'616263'), (2, 0, X'70696374757265');
INSERT INTO models(key, group_id, name, code, note, blob, preview, created) VALUES(891568578, 1, 'Old Chair', 'Old Chair', '', 1, NULL, 1700000000);
INSERT INTO textures(model_key, pos, name, blob) VALUES(891568578, 0, 'wood.jpg', 2);
INSERT INTO tokens(name, hash, rights, created) VALUES('anna', X'ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad', 2, 1700000000);
COMMIT;
PRAGMA journal_mode=WAL;
