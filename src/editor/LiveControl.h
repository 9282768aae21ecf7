#pragma once

class CNomarEditorImpl;

/// The live control of this process, or null. Set by the control's constructor, cleared by its
/// destructor.
extern CNomarEditorImpl* g_editorImpl;
