#include "SampleNote.h"

#include <QCryptographicHash>

namespace bench {

namespace {

constexpr qsizetype kBytesPerAttachment = 2048;

const char* const kSentences[] = {
    "会议纪要：第三季度的产品路线已经确定，各小组请在周五之前更新自己的计划。",
    "The editor keeps every version of a note under the digest of its text. ",
    "打开文件时如果发现摘要不符，就把它列为损坏，不要自动删除。",
    "Latency at the 99th percentile stayed below 12 ms &amp; memory did not grow. ",
    "<b>重点</b>：附件的原始文件名可以是任何语言，包括 <i>mixed 中英文</i> 与空格。",
    "See <a href=\"https://example.org/notes?id=42&amp;lang=zh\">the meeting page</a> for "
    "details. ",
    "表格里的数字以人民币（元）为单位，保留两位小数；合计 1,234,567.89。",
    "<span style=\"color:#c00;font-size:14px\">Please review before Friday, 下午三点</span>. ",
};
constexpr int kSentenceCount = sizeof kSentences / sizeof kSentences[0];

QByteArray digestOf(const char* kind, int index)
{
    return QCryptographicHash::hash(kind + QByteArray::number(index), QCryptographicHash::Md5)
        .toHex();
}

// A few hundred bytes; where it begins in the table of sentences makes paragraphs differ.
QByteArray paragraph(int index)
{
    QByteArray html = "<p>";
    const int sentences = 3 + index % 5;
    for (int i = 0; i < sentences; ++i)
        html += kSentences[(index * 3 + i) % kSentenceCount];
    return html + "#" + QByteArray::number(index) + "</p>\n";
}

} // namespace

QByteArray sampleAttachment(int index)
{
    const bool isPicture = index % 2 == 0;
    const QByteArray ext = isPicture ? "png" : "docx";
    const QByteArray fileName = digestOf("file", index) + "." + ext;
    const QByteArray shownName = isPicture ? fileName : digestOf("card", index) + ".bmp";
    const QByteArray origName = "项目报告 report-" + QByteArray::number(index) + "." + ext;
    const QByteArray shownPath = "../userdata\\attachment\\" + shownName;
    return "<img class=\"userdata\\attachment\\" + fileName + "\" src=\"" + shownPath
        + "\" data-ke-src=\"" + shownPath + "\" nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;"
        + origName.toBase64() + "&quot;}\">";
}

QByteArray sampleNote(qsizetype bytes)
{
    QByteArray html;
    html.reserve(bytes + kBytesPerAttachment);
    int paragraphs = 0;
    int attachments = 0;
    while (html.size() < bytes) {
        html += paragraph(paragraphs++);
        if (html.size() >= (attachments + 1) * kBytesPerAttachment)
            html += "<p>" + sampleAttachment(attachments++) + "</p>\n";
    }
    return html;
}

QString sampleNoteText(qsizetype bytes)
{
    return QString::fromUtf8(sampleNote(bytes));
}

} // namespace bench
