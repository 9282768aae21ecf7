-- The host's memory of its notes. Names and paths are as the control handed them over.
-- Statements are parted by empty lines. They make an empty file a shelf, and raise one of version 1.
CREATE TABLE IF NOT EXISTS note (
    id INTEGER PRIMARY KEY,
    guid TEXT NOT NULL UNIQUE,
    title TEXT,
    excerpt TEXT,
    words INTEGER,
    changed INTEGER, -- milliseconds since 1970
    read_only INTEGER DEFAULT 0,
    binned INTEGER DEFAULT 0
);

-- One row for each record of the last save, in the order of its list; no size where there was no such file.
CREATE TABLE IF NOT EXISTS file (
    guid TEXT NOT NULL REFERENCES note (guid) ON DELETE CASCADE,
    position INTEGER,
    orig_name TEXT,
    spare_text TEXT,
    file_type INTEGER,
    modify_time TEXT,
    file_ext TEXT,
    file_name TEXT,
    file_path TEXT,
    is_src_file INTEGER,
    size INTEGER,
    PRIMARY KEY (guid, position)
) WITHOUT ROWID;

CREATE INDEX IF NOT EXISTS file_by_path ON file (file_path);

-- Chinese does not part its words, so the index holds all runs of three characters.
CREATE VIRTUAL TABLE IF NOT EXISTS note_text USING fts5 (plain_text, tokenize = 'trigram');

-- A picture is in the list twice under one path, so sizes are summed by path.
CREATE VIEW IF NOT EXISTS summary AS SELECT guid, title, excerpt, changed, read_only, binned, words,
    (SELECT count(*) FROM file WHERE guid = note.guid AND file_type = 2) AS attachments,
    (SELECT total(size) FROM (SELECT DISTINCT file_path, size FROM file WHERE guid = note.guid)) AS bytes,
    id FROM note;

-- Files that a note had before an edit took them out: they stay, since the edit may be undone, and go with the note.
CREATE TABLE IF NOT EXISTS former (
    file_path TEXT,
    guid TEXT,
    PRIMARY KEY (file_path, guid)
) WITHOUT ROWID;

-- Files to be deleted once no note has them in `file` or `former`: the note file that a save replaces, and all files
-- of a note that is deleted.
CREATE TABLE IF NOT EXISTS leftover (file_path TEXT PRIMARY KEY) WITHOUT ROWID;

CREATE TRIGGER IF NOT EXISTS note_file_replaced AFTER DELETE ON file WHEN old.file_type = 0 BEGIN
    INSERT OR IGNORE INTO leftover VALUES (old.file_path);
END;

CREATE TRIGGER IF NOT EXISTS file_taken_out AFTER DELETE ON file WHEN old.file_type <> 0 BEGIN
    INSERT OR IGNORE INTO former VALUES (old.file_path, old.guid);
END;

-- Version 1 knew nothing of former files.
DROP TRIGGER IF EXISTS note_deleted;

DROP TRIGGER IF EXISTS file_in_use_again;

-- The rows of `file` go here, ahead of the note that they refer to, so that the triggers above see to each.
CREATE TRIGGER note_deleted BEFORE DELETE ON note BEGIN
    DELETE FROM file WHERE guid = old.guid;
    INSERT OR IGNORE INTO leftover SELECT file_path FROM former WHERE guid = old.guid;
    DELETE FROM former WHERE guid = old.guid;
    DELETE FROM note_text WHERE rowid = old.id;
END;

CREATE TRIGGER file_in_use_again AFTER INSERT ON file BEGIN
    DELETE FROM leftover WHERE file_path = new.file_path;
    DELETE FROM former WHERE file_path = new.file_path AND guid = new.guid;
END;

PRAGMA user_version = 2;
