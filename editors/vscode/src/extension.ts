import { commands, workspace, type ExtensionContext } from 'vscode'
import { LanguageClient } from 'vscode-languageclient/node'
import { optionsOf, selector, serverOf, type Settings } from './server'

let client: LanguageClient | undefined

function settings(): Settings {
  const given = workspace.getConfiguration('codeAnalyzer')
  return {
    path: given.get('path', ''),
    checkProject: given.get('checkProject', true),
    configuration: given.get('configuration', ''),
    delay: given.get('delay', 200),
  }
}

async function start(context: ExtensionContext): Promise<void> {
  const chosen = settings()
  client = new LanguageClient('codeAnalyzer', 'Code Analyzer', serverOf(context.extensionPath, chosen), {
    documentSelector: selector,
    initializationOptions: optionsOf(chosen),
    synchronize: { configurationSection: 'codeAnalyzer' },
  })
  await client.start()
}

export async function activate(context: ExtensionContext): Promise<void> {
  const restart = async () => {
    await deactivate()
    await start(context)
  }
  context.subscriptions.push(
    commands.registerCommand('codeAnalyzer.restart', restart),
    workspace.onDidChangeConfiguration((change) => (change.affectsConfiguration('codeAnalyzer.path') ? restart() : undefined)),
  )
  await start(context)
}

export async function deactivate(): Promise<void> {
  const ended = client
  client = undefined
  await ended?.stop()
}
