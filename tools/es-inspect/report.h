// SPDX-License-Identifier: BSD-3-Clause
#ifndef ESINSPECT_REPORT_H
#define ESINSPECT_REPORT_H

class Inspector;
class QTextStream;

// Writes what an Inspector found: as readable text, or as a Graphviz graph.
class Report
{
public:
    explicit Report(const Inspector &inspector);

    void writeText(QTextStream &out) const;
    void writeDot(QTextStream &out) const;

private:
    const Inspector &m_inspector;
};

#endif // ESINSPECT_REPORT_H
