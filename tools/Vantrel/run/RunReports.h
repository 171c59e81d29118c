// What a run tells of files and objects, in reports and in the log.
#pragma once

#include "STBlock.h"

#include <QString>

#include <functional>

/// Makes the reports of a run and hands each on; errors are logged as well.
class RunReports final
{
public:
    using Receiver = std::function<void(const STBlock &report)>;

    explicit RunReports(Receiver receiver)
        : m_receiver(std::move(receiver))
    {
    }

    void tell(const STBlock &object) const { m_receiver(object); }
    void tellFile(const QString &imageFile, int status, const QString &errorText = {}) const;

    /// An image file that cannot be converted; its path is put into `message`.
    void tellImageFileError(const QString &path, QString &message) const;
    /// A temp file that cannot be written. The log tells the reason too, an errno, where there is
    /// one to tell.
    void tellTempFileError(const QString &imageFile, const QString &message, int reason) const;
    /// An object whose shape cannot be used: its record becomes an error.
    void tellUnusableShape(STBlock &object, const QString &shapeFile, const QString &errorText) const;

private:
    Receiver m_receiver;
};
