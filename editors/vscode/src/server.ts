// What the extension starts, apart from the editor, so that tests can start the same.

import { existsSync } from 'node:fs'
import { join } from 'node:path'

export interface Settings {
  path: string
  checkProject: boolean
  configuration: string
  delay: number
}

export interface Server {
  command: string
  args: string[]
}

/** The program that the user names, else the one that came with the extension, else whichever is installed. */
export function serverOf(extensionFolder: string, settings: Pick<Settings, 'path'>): Server {
  const bundled = join(extensionFolder, 'server', 'bin', 'code-analyzer')
  const command = settings.path || (existsSync(bundled) ? bundled : 'code-analyzer')
  return { command, args: ['language-server'] }
}

/** What the server is told when it starts. */
export function optionsOf(settings: Settings): Record<string, unknown> {
  const { checkProject, configuration, delay } = settings
  return configuration ? { checkProject, configuration, delay } : { checkProject, delay }
}

/** Which documents are checked. */
export const selector = ['php', 'html', 'css'].map((language) => ({ scheme: 'file', language }))
