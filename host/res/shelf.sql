-- The host's memory of its notes. Names and paths are as the control handed them over.
-- Statements are parted by empty lines.
CREATE TABLE note (
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
CREATE TABLE file (
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

CREATE INDEX file_by_path ON file (file_path);

-- Chinese does not part its words, so the index holds all runs of three characters.
CREATE VIRTUAL TABLE note_text USING fts5 (plain_text, tokenize = 'trigram');

-- A picture is in the list twice under one path, so sizes are summed by path.
CREATE VIEW summary AS SELECT guid, title, excerpt, changed, read_only, binned, words,
    (SELECT count(*) FROM file WHERE guid = note.guid AND file_type = 2) AS attachments,
    (SELECT total(size) FROM (SELECT DISTINCT file_path, size FROM file WHERE guid = note.guid)) AS bytes,
    id FROM note;

-- Files to be deleted once no note refers to them: the note file that a save replaces, and all files of a note
-- that is deleted. An attachment that an edit takes out stays: the edit may be undone.
CREATE TABLE leftover (file_path TEXT PRIMARY KEY) WITHOUT ROWID;

CREATE TRIGGER note_file_replaced AFTER DELETE ON file WHEN old.file_type = 0 BEGIN
    INSERT OR IGNORE INTO leftover VALUES (old.file_path);
END;

CREATE TRIGGER note_deleted BEFORE DELETE ON note BEGIN
    INSERT OR IGNORE INTO leftover SELECT file_path FROM file WHERE guid = old.guid;
    DELETE FROM note_text WHERE rowid = old.id;
END;

CREATE TRIGGER file_in_use_again AFTER INSERT ON file BEGIN
    DELETE FROM leftover WHERE file_path = new.file_path;
END;

PRAGMA user_version = 1;
